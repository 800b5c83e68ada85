// The information text about orchids, line by line as it is shown and printed.
#include "extras/info_text.h"

namespace {

// P: the last line of a paragraph; S: the last line of a section (and of its paragraph).
constexpr uint8_t N = 0, P = 1, S = 2;

struct Entry {
    const char* text;
    uint8_t end;
};

// Page 0: number, distribution, types, habitat, history and price.
const Entry kPage0[kInfoLinesPerPage] = {
    {"Orchids constitute one of the largest and most highly evolved flower families on our planet.", P},
    {"There are between 25,000 and 30,000 wild species, more than in any other plant family,", N},
    {"and growers have added well over 100,000 hybrids made by crossing them.", S},
    {"Orchids grow on every continent except Antarctica, from the edge of the Arctic tundra", N},
    {"to the hot lowlands of the tropics, where the greatest number of species is found.", P},
    {"Most tropical orchids are epiphytes: they live perched on the branches of trees,", N},
    {"taking water from rain and mist and food from the debris that gathers round their roots.", P},
    {"Others are terrestrial and root in the soil of meadows, marshes and woodland floors,", N},
    {"as do nearly all the orchids of cool climates. A few are lithophytes, clinging to rock,", N},
    {"and a small number live underground for most of their lives, without green leaves,", N},
    {"fed entirely by fungi that grow in and around their roots.", P},
    {"Orchids choose their homes with care. Some need the cool air of the cloud forests,", N},
    {"others the steady warmth of river valleys; many will flower only where the light,", N},
    {"the moisture and the movement of the air are just right for them.", S},
    {"People have admired orchids for a very long time. Chinese writers praised their scent", N},
    {"more than two thousand years ago, and the plant stood for refinement and friendship.", P},
    {"The name comes from the Greek word orchis, given by Theophrastus to a plant of the family.", P},
    {"In the nineteenth century a passion for orchids swept Europe. Collectors sent hunters", N},
    {"to the jungles of the world, and whole forests were stripped to fill their glasshouses.", P},
    {"Rare plants were sold at auction for extraordinary sums, and some hunters lost their", N},
    {"lives in the search for a single new species.", S},
    {"Everything changed when growers learned to raise orchids from seed in sterile flasks", N},
    {"and later to multiply the best plants in the laboratory. Plants that cost a fortune", N},
    {"became available to everyone, and today orchids are among the most popular house plants.", P},
    {"A hundred years ago a collector might pay the price of a house", N},
    {"for a superior plant. Now you can purchase a very nice one for less than $25.", S},
};

// Page 1: growth forms and plant structures.
const Entry kPage1[kInfoLinesPerPage] = {
    {"Orchids can be:", P},
    {"Monopodial, growing upwards from a single stem that adds new leaves at its tip,", N},
    {"like the moth orchids, Phalaenopsis, and the Vandas, whose stems may climb for metres", N},
    {"and send out their flower spikes from between the leaves.", P},
    {"Sympodial, growing sideways along a creeping stem, the rhizome, which sends up", N},
    {"a new shoot every season, like the Cattleyas, the Dendrobiums and the Oncidiums;", N},
    {"each shoot flowers and then rests while the next one grows.", S},
    {"Whatever their habit, all orchids share the same basic plant structures.", P},
    {"Many epiphytic orchids keep water and food in pseudobulbs, swollen stems at the base", N},
    {"of the leaves that carry the plant through the dry season; their shape and size vary", N},
    {"from tiny beads to fat canes more than a metre long.", P},
    {"The leaves may be thin and pleated, or thick and leathery to keep in moisture;", N},
    {"some species lose them every year, and a few have no leaves at all.", P},
    {"The roots of epiphytes are covered with velamen, a spongy white layer of dead cells.", P},
    {"Velamen soaks up water quickly when it rains and protects the living root when it is", N},
    {"dry; in many species the roots are green and help the leaves to make food.", S},
    {"The flower is the most remarkable part of the plant.", P},
    {"Every orchid flower has three sepals and three petals. One petal, the lip or labellum,", N},
    {"differs from the others and often serves as a landing platform for visitors.", P},
    {"The male and female parts are fused into a single organ, the column, and the pollen", N},
    {"is held together in small waxy masses, the pollinia, which are carried away whole", N},
    {"on the body of the animal that visits the flower.", P},
    {"A single seed pod may hold more than a million seeds as fine as dust.", P},
    {"Many flowers imitate the shape, colour or scent of a female insect, or offer nectar", N},
    {"at the end of a long spur, so that each species is pollinated only by", N},
    {"specific insects or birds.", S},
};

InfoLine g_lines[kInfoPageCount][kInfoLinesPerPage];
bool g_linesReady = false;

void MakeLines() {
    const Entry* pages[kInfoPageCount] = {kPage0, kPage1};
    for (int page = 0; page < kInfoPageCount; ++page) {
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            const Entry& entry = pages[page][line];
            g_lines[page][line] = {entry.text, uint8_t(entry.end != N), uint8_t(entry.end == S)};
        }
    }
    g_linesReady = true;
}

}  // namespace

const InfoLine* InfoTextLine(int page, int line) {
    if (page < 0 || page >= kInfoPageCount || line < 0 || line >= kInfoLinesPerPage) return nullptr;
    if (!g_linesReady) MakeLines();
    return &g_lines[page][line];
}

int32_t InfoScreenStep(int page, int line) {
    const InfoLine* entry = InfoTextLine(page, line);
    return entry && entry->endsParagraph ? 20 : 13;
}

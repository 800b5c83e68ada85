// The game's four background pieces: a small synthesiser (FM electric piano, plucked strings, pads,
// struck bars and bells) and a composer that writes each piece from fixed seeds, so that every build
// makes the same files.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "mediagen/media.h"

namespace {

constexpr int kRate = 11025;
constexpr double kTwoPi = 6.283185307179586;
// Nothing is synthesised above this: at 11025 samples a second anything higher folds back or hisses.
constexpr double kCeiling = 3800;

// xorshift32: the same numbers on every machine and every build.
struct Rng {
    uint32_t state;
};

uint32_t NextRandom(Rng& rng) {
    uint32_t x = rng.state;
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    return rng.state = x;
}

double Uniform(Rng& rng) { return (NextRandom(rng) >> 8) / double(1u << 24); }

int PickIndex(Rng& rng, size_t count) { return std::min(int(Uniform(rng) * double(count)), int(count) - 1); }

// A sine from a table with linear interpolation; the argument is in cycles.
constexpr int kSineSize = 4096;
float g_sine[kSineSize + 1];

void FillSineTable() {
    for (int i = 0; i <= kSineSize; ++i) g_sine[i] = float(std::sin(kTwoPi * i / kSineSize));
}

double Sine(double cycles) {
    double x = (cycles - std::floor(cycles)) * kSineSize;
    int i = int(x);
    if (i >= kSineSize) return 0;
    return g_sine[i] + (g_sine[i + 1] - g_sine[i]) * (x - i);
}

double NoteHz(double midi) { return 440.0 * std::pow(2.0, (midi - 69) / 12); }

using Track = std::vector<float>;

// Second-order Butterworth low-pass (bilinear transform), run sample by sample.
struct LowPass {
    double b0, b1, b2, a1, a2, x1, x2, y1, y2;
};

LowPass MakeLowPass(double corner) {
    double k = std::tan(M_PI * corner / kRate), norm = 1 / (1 + std::sqrt(2.0) * k + k * k);
    double b0 = k * k * norm;
    return {b0, 2 * b0, b0, 2 * (k * k - 1) * norm, (1 - std::sqrt(2.0) * k + k * k) * norm, 0, 0, 0, 0};
}

double Filter(LowPass& f, double x) {
    double y = f.b0 * x + f.b1 * f.x1 + f.b2 * f.x2 - f.a1 * f.y1 - f.a2 * f.y2;
    f.x2 = f.x1;
    f.x1 = x;
    f.y2 = f.y1;
    f.y1 = y;
    return y;
}

void AddSample(Track& track, long at, double value) {
    if (at >= 0 && size_t(at) < track.size()) track[size_t(at)] += float(value);
}

// ---------------------------------------------------------------------------------------------
// Instruments. Each adds one note into the track: start and length in seconds, velocity 0..1.

// Electric piano: two-operator FM at 1:1 whose index falls after the strike (bright "tine", then a
// round tone), with a second carrier a few cents sharp for the slow beating of a real instrument.
// The index shrinks for high notes so the sidebands stay under the ceiling.
void AddElectricPiano(Track& out, double start, double length, double midi, double velocity) {
    double f = NoteHz(midi), f2 = f * std::pow(2.0, 4.0 / 1200);
    double index = std::clamp(kCeiling / (3.2 * f), 0.25, 1.5) * (0.6 + 0.4 * velocity);
    double decay = 2.2 * std::pow(262.0 / f, 0.4), release = 0.3;
    long first = std::lround(start * kRate), count = std::lround((length + release) * kRate);
    // The decays as running products: an exp() per sample made the whole album slow.
    double fast = 1, slow = 1, bright = 1;
    const double fastStep = std::exp(-1.0 / (0.4 * kRate)), slowStep = std::exp(-1.0 / (decay * kRate));
    const double brightStep = std::exp(-1.0 / (0.3 * kRate));
    for (long i = 0; i < count; ++i) {
        double t = double(i) / kRate;
        double amp = velocity * std::min(1.0, t / 0.005) * (0.5 * fast + 0.5 * slow);
        if (t > length) amp *= 0.5 + 0.5 * std::cos(M_PI * (t - length) / release);
        double i1 = index * (0.35 + 0.65 * bright);
        fast *= fastStep;
        slow *= slowStep;
        bright *= brightStep;
        double v = Sine(f * t + i1 / kTwoPi * Sine(f * t)) + 0.4 * Sine(f2 * t + 0.7 * i1 / kTwoPi * Sine(f2 * t));
        AddSample(out, first + i, amp * v * 0.7);
    }
}

// Plucked string (Karplus-Strong): a burst of soft noise circulating in a tuned delay line. The
// two-tap loop filter is weighted per note so that high strings still ring about a second at this
// low sampling rate, and an all-pass filter supplies the fraction of a sample the pitch needs.
// After `length` the string is damped by hand over a third of a second.
void AddPluck(Track& out, double start, double length, double midi, double velocity, Rng& rng) {
    double f = NoteHz(midi), period = kRate / f;
    double ring = std::clamp(2.4 * std::sqrt(196.0 / f), 0.8, 3.5);  // seconds for the fundamental to fall by e
    double wanted = std::exp(-1.0 / (f * ring));                       // its loss per period
    double c = 1 - std::cos(kTwoPi * f / kRate);
    double s = 0.5, gain = std::sqrt(1 - 2 * s * (1 - s) * c);
    if (gain < wanted) {
        double p = std::min(0.25, (1 - wanted * wanted) / (2 * c));
        s = (1 - std::sqrt(1 - 4 * p)) / 2;
        gain = std::sqrt(1 - 2 * s * (1 - s) * c);
    }
    double rho = std::min(1.0, wanted / gain);
    int n = std::max(2, int(std::floor(period - s - 0.1)));
    double d = period - s - n, allpass = (1 - d) / (1 + d);

    std::vector<double> line(size_t(n), 0.0);
    double low1 = 0, low2 = 0, mean = 0, energy = 0;
    double soft = 0.3 + 0.25 * velocity;  // a firmer pluck is brighter
    for (double& x : line) {
        low1 += soft * ((Uniform(rng) * 2 - 1) - low1);
        low2 += soft * (low1 - low2);
        x = low2;
        mean += x;
    }
    mean /= n;
    for (double& x : line) {
        x -= mean;  // no DC circulating in the loop
        energy += x * x;
    }
    double scale = velocity / std::sqrt(energy / n + 1e-12) * 0.45;
    for (double& x : line) x *= scale;

    double damp = 0.33;
    long first = std::lround(start * kRate);
    long count = std::lround(std::min(length + damp, 6 * ring) * kRate);
    double last = 0, apIn = 0, apOut = 0;
    size_t pos = 0;
    // High strings keep their upper harmonics long in this loop; a filter outside it (so the tuning
    // stays) takes off the wiry top.
    LowPass soften = MakeLowPass(2800);
    for (long i = 0; i < count; ++i) {
        double t = double(i) / kRate, x = line[pos];
        double filtered = rho * ((1 - s) * x + s * last);
        last = x;
        double y = allpass * filtered + apIn - allpass * apOut;
        apIn = filtered;
        apOut = y;
        line[pos] = y;
        pos = (pos + 1) % line.size();
        double env = std::min(1.0, t / 0.002);
        if (t > length) env *= 0.5 + 0.5 * std::cos(M_PI * std::min(1.0, (t - length) / damp));
        double tail = count - i < 200 ? (count - i) / 200.0 : 1.0;
        AddSample(out, first + i, Filter(soften, x) * env * tail);
    }
}

// One cycle of a band-limited wave: harmonics falling off like a softened sawtooth, none above
// `ceiling` Hz.
std::vector<float> MakeWave(double f, double ceiling, double tilt) {
    std::vector<float> wave(2049, 0.0f);
    int harmonics = std::max(1, int(ceiling / f));
    for (int k = 1; k <= harmonics; ++k) {
        double amp = 1.0 / std::pow(k, tilt);
        for (int i = 0; i < 2048; ++i) wave[size_t(i)] += float(amp * Sine(double(k) * i / 2048));
    }
    float peak = 1e-6f;
    for (float v : wave) peak = std::max(peak, std::fabs(v));
    for (float& v : wave) v /= peak;
    wave[2048] = wave[0];
    return wave;
}

double ReadWave(const std::vector<float>& wave, double cycles) {
    double x = (cycles - std::floor(cycles)) * 2048;
    int i = std::min(int(x), 2047);
    return wave[size_t(i)] + (wave[size_t(i) + 1] - wave[size_t(i)]) * (x - i);
}

// Pad: three slightly detuned copies of a warm wave, swelling in and fading out slowly.
void AddPad(Track& out, double start, double length, double midi, double velocity, Rng& rng) {
    double f = NoteHz(midi);
    std::vector<float> wave = MakeWave(f, 2000, 1.6);
    const double detune[3] = {-7, 0, 6.5};
    double phase[3];
    for (double& p : phase) p = Uniform(rng);
    double attack = 1.1, release = 1.8, hz[3];
    for (int k = 0; k < 3; ++k) hz[k] = f * std::pow(2.0, detune[k] / 1200);
    long first = std::lround(start * kRate), count = std::lround((length + release) * kRate);
    for (long i = 0; i < count; ++i) {
        double t = double(i) / kRate;
        double env = t < attack ? 0.5 - 0.5 * std::cos(M_PI * t / attack) : 1.0;
        if (t > length) env *= 0.5 + 0.5 * std::cos(M_PI * std::min(1.0, (t - length) / release));
        double v = 0;
        for (int k = 0; k < 3; ++k) v += ReadWave(wave, phase[k] + hz[k] * t);
        // A slow breath in the level so a long chord does not stand still.
        double breath = 1 + 0.08 * Sine(0.13 * (start + t));
        AddSample(out, first + i, velocity * env * breath * v / 3);
    }
}

// A struck or plucked tone made of sine partials, each dying away at its own rate: bass, felt
// piano, music box and chimes.
struct Partial {
    double ratio, amplitude, decay;  // decay: seconds to fall by e
};

void AddStruck(Track& out, double start, double length, double midi, double velocity,
               const std::vector<Partial>& partials, double attack, double release) {
    double f = NoteHz(midi);
    double longest = 0;
    for (const Partial& p : partials) longest = std::max(longest, p.decay);
    double end = std::min(length, 7 * longest);
    long first = std::lround(start * kRate), count = std::lround((end + release) * kRate);
    for (const Partial& p : partials) {
        double pf = f * p.ratio;
        if (pf > kCeiling) continue;
        double fall = 1;
        const double fallStep = std::exp(-1.0 / (p.decay * kRate));
        for (long i = 0; i < count; ++i) {
            double t = double(i) / kRate;
            double env = std::min(1.0, t / attack) * fall;
            fall *= fallStep;
            if (t > end) env *= 0.5 + 0.5 * std::cos(M_PI * std::min(1.0, (t - end) / release));
            AddSample(out, first + i, velocity * p.amplitude * env * Sine(pf * t));
        }
    }
}

void AddBass(Track& out, double start, double length, double midi, double velocity) {
    AddStruck(out, start, length, midi, velocity, {{1, 1.0, 2.6}, {2, 0.28, 0.9}, {3, 0.08, 0.4}}, 0.02, 0.3);
}

// Felt piano: a soft hammer (slow attack, few upper partials), slightly stretched partials.
void AddFeltPiano(Track& out, double start, double length, double midi, double velocity) {
    double ring = 2.8 * std::pow(262.0 / NoteHz(midi), 0.3);
    AddStruck(out, start, length, midi, velocity,
              {{1, 1.0, ring}, {2.003, 0.38, ring * 0.55}, {3.009, 0.13, ring * 0.35}, {4.018, 0.05, ring * 0.25}},
              0.012, 0.35);
}

// Music-box tine: an almost pure fundamental with quick inharmonic partials for the "ting".
void AddMusicBox(Track& out, double start, double midi, double velocity) {
    double ring = 1.3 * std::pow(1000.0 / NoteHz(midi), 0.4);
    AddStruck(out, start, 4 * ring, midi, velocity,
              {{1, 1.0, ring}, {2.0, 0.10, ring * 0.3}, {3.02, 0.16, ring * 0.18}, {5.4, 0.07, 0.05}}, 0.0015, 0.1);
}

// Tubular chime: the partials of a free bar, long and quiet.
void AddChime(Track& out, double start, double midi, double velocity) {
    AddStruck(out, start, 5.0, midi, velocity, {{1, 1.0, 2.4}, {2.76, 0.42, 1.0}, {5.40, 0.2, 0.4}, {8.93, 0.1, 0.2}},
              0.002, 0.4);
}

// A small room: four damped combs into two all-passes (the usual Schroeder layout), so the
// instruments do not sound dry and boxed in. Returns the room's sound only.
Track Room(const Track& dry, double feedback, double damping) {
    const int combDelays[4] = {307, 331, 359, 383};
    const int allpassDelays[2] = {139, 107};
    Track wet(dry.size(), 0.0f);
    for (int delay : combDelays) {
        std::vector<double> buffer(size_t(delay), 0.0);
        double store = 0;
        size_t pos = 0;
        for (size_t i = 0; i < dry.size(); ++i) {
            double y = buffer[pos];
            store = y * (1 - damping) + store * damping;
            buffer[pos] = dry[i] + store * feedback;
            pos = (pos + 1) % buffer.size();
            wet[i] += float(y / 4);
        }
    }
    for (int delay : allpassDelays) {
        std::vector<double> buffer(size_t(delay), 0.0);
        size_t pos = 0;
        for (float& v : wet) {
            double in = v, held = buffer[pos];
            buffer[pos] = in + held * 0.5;
            pos = (pos + 1) % buffer.size();
            v = float(held - in);
        }
    }
    return wet;
}

// The last steps: room, no DC, nothing near the top of the band, a short fade at each end so the
// replay from the start is seamless, and a peak of -3 dBFS.
std::vector<int16_t> Finish(const Track& dry, double wetLevel, double feedback, double fadeIn, double fadeOut) {
    Track wet = Room(dry, feedback, 0.35);
    std::vector<double> mix(dry.size());
    for (size_t i = 0; i < dry.size(); ++i) mix[i] = dry[i] + wetLevel * wet[i];

    // Two low-passes in a row: flat to 3 kHz, well down by 5 kHz.
    LowPass first = MakeLowPass(3900), second = MakeLowPass(3900);
    double dcIn = 0, dcOut = 0;
    for (double& v : mix) {
        double y = Filter(second, Filter(first, v));
        double blocked = y - dcIn + 0.995 * dcOut;  // DC blocker, corner near 9 Hz
        dcIn = y;
        dcOut = blocked;
        v = blocked;
    }
    size_t in = size_t(fadeIn * kRate), out = size_t(fadeOut * kRate);
    for (size_t i = 0; i < in && i < mix.size(); ++i) mix[i] *= 0.5 - 0.5 * std::cos(M_PI * double(i) / double(in));
    for (size_t i = 0; i < out && i < mix.size(); ++i)
        mix[mix.size() - 1 - i] *= 0.5 - 0.5 * std::cos(M_PI * double(i) / double(out));

    double peak = 1e-9;
    for (double v : mix) peak = std::max(peak, std::fabs(v));
    double gain = 0.708 * 32767 / peak;
    std::vector<int16_t> samples(mix.size());
    for (size_t i = 0; i < mix.size(); ++i) samples[i] = int16_t(std::lround(mix[i] * gain));
    return samples;
}

// ---------------------------------------------------------------------------------------------
// Composition. Pitches are scale degrees (0 the tonic, 7 the octave above, negative below).

struct Key {
    int tonic;  // MIDI note of degree 0
    int steps[7];
};

int FloorDiv(int a, int b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

int Pitch(const Key& key, int degree) {
    int octave = FloorDiv(degree, 7);
    return key.tonic + 12 * octave + key.steps[degree - 7 * octave];
}

// Whether the degree belongs to the triad (or seventh chord) built on `root`.
bool InChord(int degree, int root, bool seventh) {
    int r = ((degree - root) % 7 + 7) % 7;
    return r == 0 || r == 2 || r == 4 || (seventh && r == 6);
}

using Rhythm = std::vector<std::pair<double, double>>;  // (onset, length) in beats within a bar

struct MelodyStyle {
    int beatsPerBar, slotsPerBar;  // slots: chords per bar
    double strongEvery;            // beats between the bar's strong points
    int low, high, start;          // the melody's range and where a phrase sets out from
    std::vector<Rhythm> rhythms;   // the bars inside a phrase
    std::vector<Rhythm> cadences;  // its last bar
};

// A phrase: its chords (root degree per slot), its melody's seed (the same seed gives the same
// opening, so a returning phrase is recognised) and the degree its melody comes to rest on.
struct Phrase {
    std::vector<int> chords;
    uint32_t seed;
    int finalDegree;
    bool melody;
};

struct MelodyNote {
    double beat, beats;
    int degree;
    double velocity;
};

int PickWeighted(Rng& rng, const std::vector<double>& weights) {
    double total = 0;
    for (double w : weights) total += w;
    double r = Uniform(rng) * total;
    for (size_t i = 0; i < weights.size(); ++i) {
        if (r < weights[i]) return int(i);
        r -= weights[i];
    }
    return int(weights.size()) - 1;
}

// A chord tone near the previous note: small moves are likeliest, leaps rare, and the middle of the
// range is preferred so the line does not drift to an edge.
int PickChordTone(Rng& rng, const MelodyStyle& style, int root, int previous) {
    std::vector<double> weights;
    double middle = 0.5 * (style.low + style.high), span = style.high - style.low;
    for (int d = style.low; d <= style.high; ++d) {
        double w = 0;
        if (InChord(d, root, false)) {
            int leap = std::abs(d - previous);
            w = leap == 0 ? 0.45 : leap <= 2 ? 1.0 : leap <= 4 ? 0.4 : leap <= 7 ? 0.02 : 0.0;
            w *= std::exp(-2.0 * ((d - middle) / span) * ((d - middle) / span));
        }
        weights.push_back(w);
    }
    double total = 0;
    for (double w : weights) total += w;
    if (total <= 0) {
        for (int d = previous; d <= style.high + 7; ++d)
            if (InChord(d, root, false)) return std::clamp(d, style.low, style.high);
    }
    return style.low + PickWeighted(rng, weights);
}

// A note off the beat: mostly a step on in the line's direction, sometimes a third, a tone of the
// chord now and then, rarely a repeat.
int StepFrom(Rng& rng, const MelodyStyle& style, int root, int previous, int& direction) {
    if (Uniform(rng) < 0.3) direction = -direction;
    if (Uniform(rng) < 0.2) {
        int d = PickChordTone(rng, style, root, previous);
        if (d != previous) direction = d > previous ? 1 : -1;
        return d;
    }
    double r = Uniform(rng);
    int move = r < 0.08 ? 0 : r < 0.82 ? direction : 2 * direction;
    int d = previous + move;
    if (d < style.low || d > style.high) {
        direction = -direction;
        d = previous - move;
    }
    return std::clamp(d, style.low, style.high);
}

// One phrase of melody: rhythm motifs stated, answered and stated again, then a cadence that steps
// onto the phrase's final degree. A four-bar phrase restates its first bar as a sequence (moved to
// another tone of the chord); an eight-bar one opens its second half as it opened its first.
std::vector<MelodyNote> ComposePhrase(const MelodyStyle& style, const Phrase& phrase) {
    std::vector<MelodyNote> notes;
    if (!phrase.melody) return notes;
    Rng rng{phrase.seed};
    int bars = int(phrase.chords.size()) / style.slotsPerBar;
    double slotBeats = double(style.beatsPerBar) / style.slotsPerBar;
    auto chordAt = [&](double beat) {
        size_t slot = std::min(size_t(beat / slotBeats), phrase.chords.size() - 1);
        return phrase.chords[slot];
    };
    std::string plan = bars == 1 ? "C" : bars == 2 ? "aC" : bars == 4 ? "abaC" : bars == 8 ? "abcdabeC" : "";
    if (plan.empty()) {
        for (int b = 0; b + 1 < bars; ++b) plan += char('a' + b % 2);
        plan += 'C';
    }
    int rhythmOf[26];
    std::vector<int> shapeOf[26];
    std::fill(rhythmOf, rhythmOf + 26, -1);
    int previous = style.start, direction = Uniform(rng) < 0.5 ? 1 : -1;
    auto strong = [&](double onset, double length) {
        return std::fmod(onset, style.strongEvery) == 0 || length >= style.strongEvery;
    };

    for (int bar = 0; bar < bars; ++bar) {
        double at = double(bar) * style.beatsPerBar;
        std::vector<int> degrees;
        const Rhythm* rhythm;
        if (plan[size_t(bar)] == 'C') {
            rhythm = &style.cadences[size_t(PickIndex(rng, style.cadences.size()))];
            int target = phrase.finalDegree;
            // The octave of the final degree nearest the line.
            while (target - 7 >= style.low && std::abs(target - 7 - previous) < std::abs(target - previous))
                target -= 7;
            while (target + 7 <= style.high && std::abs(target + 7 - previous) < std::abs(target - previous))
                target += 7;
            size_t count = rhythm->size();
            for (size_t k = 0; k < count; ++k) {
                int d;
                if (k + 1 == count) d = target;
                else if (k + 2 == count) d = std::clamp(target + (previous >= target ? 1 : -1), style.low, style.high);
                else d = PickChordTone(rng, style, chordAt(at + (*rhythm)[k].first), previous);
                degrees.push_back(d);
                previous = d;
            }
        } else {
            int motif = plan[size_t(bar)] - 'a';
            if (rhythmOf[motif] < 0) rhythmOf[motif] = PickIndex(rng, style.rhythms.size());
            rhythm = &style.rhythms[size_t(rhythmOf[motif])];
            const std::vector<int>& shape = shapeOf[motif];
            if (!shape.empty()) {
                // The motif again, moved so that its first note is a tone of this bar's chord.
                int root = chordAt(at), bestShift = 99, bestCost = 1 << 20;
                for (int shift = -4; shift <= 4; ++shift) {
                    if (!InChord(shape[0] + shift, root, false)) continue;
                    bool fits = true;
                    for (int d : shape) fits = fits && d + shift >= style.low - 1 && d + shift <= style.high + 1;
                    int cost = 2 * std::abs(shift) + std::abs(shape[0] + shift - previous);
                    if (bars == 4 && shift == 0) cost += 5;
                    if (fits && cost < bestCost) {
                        bestCost = cost;
                        bestShift = shift;
                    }
                }
                if (bestShift != 99) {
                    for (size_t k = 0; k < shape.size(); ++k) {
                        int d = shape[k] + bestShift;
                        double onset = (*rhythm)[k].first;
                        int chord = chordAt(at + onset);
                        if (k > 0 && strong(onset, (*rhythm)[k].second) && !InChord(d, chord, false))
                            d += InChord(d - 1, chord, false) ? -1 : 1;
                        degrees.push_back(d);
                    }
                    previous = degrees.back();
                }
            }
            if (degrees.empty()) {
                for (const auto& [onset, length] : *rhythm) {
                    int d = strong(onset, length) ? PickChordTone(rng, style, chordAt(at + onset), previous)
                                                  : StepFrom(rng, style, chordAt(at + onset), previous, direction);
                    degrees.push_back(d);
                    previous = d;
                }
                if (shapeOf[motif].empty()) shapeOf[motif] = degrees;
            }
        }
        for (size_t k = 0; k < degrees.size(); ++k) {
            double onset = (*rhythm)[k].first, length = (*rhythm)[k].second;
            double velocity = (strong(onset, length) ? 0.8 : 0.66) + 0.06 * Uniform(rng);
            notes.push_back({at + onset, length, degrees[k], velocity});
        }
    }
    return notes;
}

// The chord's notes (root, third, fifth and, when asked, seventh) between low and high, in the
// inversion that moves least from the previous voicing.
std::vector<int> VoiceChord(const Key& key, int root, bool seventh, int low, int high,
                            const std::vector<int>& previous) {
    int count = seventh ? 4 : 3;
    std::vector<int> best;
    double bestCost = 1e9;
    for (int inversion = 0; inversion < count; ++inversion) {
        for (int octave = -4; octave <= 4; ++octave) {
            std::vector<int> v;
            for (int k = 0; k < count; ++k) {
                int idx = inversion + k;
                v.push_back(Pitch(key, root + 2 * (idx % count) + 7 * (idx / count) + 7 * octave));
            }
            if (v.front() < low || v.back() > high) continue;
            double cost = 0;
            if (previous.size() == v.size()) {
                for (size_t k = 0; k < v.size(); ++k) cost += std::abs(v[k] - previous[k]);
            } else {
                double mean = 0;
                for (int p : v) mean += p;
                cost = std::fabs(mean / count - 0.5 * (low + high));
            }
            if (cost < bestCost) {
                bestCost = cost;
                best = v;
            }
        }
    }
    if (best.empty())
        for (int k = 0; k < count; ++k) best.push_back(Pitch(key, root + 2 * k));
    return best;
}

// The root's pitch in [low, low + 12).
int BassPitch(const Key& key, int root, int low) {
    int p = Pitch(key, root);
    while (p < low) p += 12;
    while (p >= low + 12) p -= 12;
    return p;
}

// A piece laid out: its chords in time and its melody, in beats from the first bar.
struct ChordSpan {
    double beat, beats;
    int root;
    int section;  // index of its phrase in the form
};

struct Score {
    std::vector<ChordSpan> chords;
    std::vector<MelodyNote> melody;
    double beats;
};

Score LayOut(const MelodyStyle& style, const std::vector<Phrase>& form) {
    Score score{};
    double slotBeats = double(style.beatsPerBar) / style.slotsPerBar;
    for (size_t s = 0; s < form.size(); ++s) {
        const Phrase& phrase = form[s];
        for (size_t k = 0; k < phrase.chords.size(); ++k) {
            double beat = score.beats + double(k) * slotBeats;
            ChordSpan* last = score.chords.empty() ? nullptr : &score.chords.back();
            if (last && last->root == phrase.chords[k] && last->section == int(s))
                last->beats += slotBeats;
            else
                score.chords.push_back({beat, slotBeats, phrase.chords[k], int(s)});
        }
        for (MelodyNote note : ComposePhrase(style, phrase)) {
            note.beat += score.beats;
            score.melody.push_back(note);
        }
        score.beats += double(phrase.chords.size()) * slotBeats;
    }
    return score;
}

constexpr double kLead = 0.12;  // seconds of silence before the first note
constexpr double kTail = 2.4;   // seconds after the last bar for the final chord to die away

// A few milliseconds either way, so that chords and lines do not sound machine-stamped.
double Nudge(Rng& rng) { return (Uniform(rng) - 0.5) * 0.012; }

// 1. Morning Table: F major, 4/4 at 66, electric piano chords rolled gently under a slow melody.
std::vector<int16_t> MorningTable() {
    const Key key{65, {0, 2, 4, 5, 7, 9, 11}};
    MelodyStyle style{4, 2, 2, 0, 9, 4, {}, {}};
    style.rhythms = {{{0, 1.5}, {1.5, 0.5}, {2, 2}}, {{0, 2}, {2, 1}, {3, 1}}, {{0, 1}, {1, 1}, {2, 2}},
                     {{0, 3}, {3, 1}}, {{0, 1}, {1.5, 0.5}, {2, 1.5}, {3.5, 0.5}}};
    style.cadences = {{{0, 1}, {1, 1}, {2, 2}}, {{0, 2}, {2, 2}}, {{0, 1.5}, {1.5, 0.5}, {2, 2}}};
    const Phrase intro{{0, 0}, 0, 0, false};
    const Phrase a{{0, 0, 5, 5, 3, 3, 4, 4}, 0x5eed0101, 4, true};
    const Phrase a2{{0, 0, 5, 5, 1, 1, 4, 0}, 0x5eed0101, 0, true};
    const Phrase b{{3, 3, 2, 5, 1, 1, 4, 4}, 0x5eed0102, 4, true};
    const Phrase coda{{3, 3, 0, 0}, 0x5eed0103, 0, true};
    Score score = LayOut(style, {intro, a, a2, b, a2, coda});
    double beat = 60.0 / 66;
    Track track(size_t((kLead + score.beats * beat + kTail) * kRate), 0.0f);
    Rng human{0x0001f00d};

    std::vector<int> voicing;
    for (const ChordSpan& c : score.chords) {
        bool seventh = c.root != 4, final = c.beat + c.beats >= score.beats - 0.01;
        voicing = VoiceChord(key, c.root, seventh, 50, 66, voicing);
        // A rolled chord on each change, and a softer touch of its upper notes half way through; the
        // last chord is rolled once and left to ring.
        for (double at = 0; at < (final ? 1 : c.beats - 0.01); at += 2) {
            double t = kLead + (c.beat + at) * beat;
            bool full = at == 0;
            double length = final ? c.beats * beat + kTail : (full ? 1.9 : 1.4) * beat;
            for (size_t k = full ? 0 : 1; k < voicing.size(); ++k)
                AddElectricPiano(track, t + (final ? 0.07 : 0.035) * double(k) + Nudge(human), length, voicing[k],
                                 full ? 0.2 : 0.13);
        }
        AddBass(track, kLead + c.beat * beat + Nudge(human), c.beats * beat + (final ? kTail : 0),
                BassPitch(key, c.root, 41), 0.3);
    }
    for (const MelodyNote& n : score.melody) {
        bool final = n.beat + n.beats >= score.beats - 0.01;
        double length = final ? n.beats * beat + kTail : n.beats * beat * 0.95;
        AddElectricPiano(track, kLead + n.beat * beat + Nudge(human), length, Pitch(key, n.degree), 0.7 * n.velocity);
    }
    return Finish(track, 0.35, 0.8, 0.04, 0.9);
}

// 2. Harp by the Window: E minor (aeolian), 3/4 at 96, harp arpeggios in quavers with the tune above.
std::vector<int16_t> HarpByTheWindow() {
    const Key key{64, {0, 2, 3, 5, 7, 8, 10}};
    MelodyStyle style{3, 1, 3, 3, 11, 7, {}, {}};
    style.rhythms = {{{0, 2}, {2, 1}}, {{0, 1}, {1, 1}, {2, 1}}, {{0, 3}}, {{0, 1.5}, {1.5, 0.5}, {2, 1}},
                     {{0, 1}, {1, 2}}};
    style.cadences = {{{0, 3}}, {{0, 1}, {1, 2}}};
    const Phrase intro{{0, 0}, 0, 0, false};
    const Phrase a{{0, 3, 0, 6, 0, 3, 4, 4}, 0x5eed0201, 4, true};
    const Phrase a2{{0, 3, 0, 6, 2, 6, 0, 0}, 0x5eed0201, 0, true};
    const Phrase b{{2, 6, 3, 0, 2, 6, 3, 4}, 0x5eed0202, 4, true};
    const Phrase coda{{3, 0}, 0x5eed0203, 0, true};
    std::vector<Phrase> form = {intro, a, a2, b, a2, coda};
    Score score = LayOut(style, form);
    double beat = 60.0 / 96, eighth = beat / 2;
    Track track(size_t((kLead + score.beats * beat + kTail) * kRate), 0.0f);
    Rng strings{0x0002f00d}, human{0x0002beef};

    // Up through root, fifth, octave and tenth and back; the middle section turns the figure over.
    const int rising[6] = {0, 4, 7, 9, 11, 9}, falling[6] = {0, 7, 11, 9, 7, 4};
    for (const ChordSpan& c : score.chords) {
        bool last = c.section + 1 == int(form.size()) && c.beat + c.beats >= score.beats;
        const int* figure = form[size_t(c.section)].seed == b.seed ? falling : rising;
        int bassDegree = c.root;
        while (Pitch(key, bassDegree) >= 50) bassDegree -= 7;
        while (Pitch(key, bassDegree) < 38) bassDegree += 7;
        for (double bar = 0; bar < c.beats - 0.01; bar += 3) {
            int steps = last ? 4 : 6;
            for (int k = 0; k < steps; ++k) {
                double t = kLead + (c.beat + bar) * beat + k * (last ? eighth * 0.5 : eighth) + Nudge(human);
                double ring = last ? 3 * beat + kTail : (3 - k * 0.5) * beat + 0.5;
                double velocity = k == 0 ? 0.5 : 0.3 + 0.05 * (k == 3);
                AddPluck(track, t, ring, Pitch(key, bassDegree + figure[k]), velocity, strings);
            }
        }
    }
    for (const MelodyNote& n : score.melody) {
        bool final = n.beat + n.beats >= score.beats - 0.01;
        double ring = final ? 3 + kTail : n.beats * beat + 0.6;
        AddPluck(track, kLead + n.beat * beat + Nudge(human), ring, Pitch(key, n.degree), 0.85 * n.velocity, strings);
    }
    return Finish(track, 0.4, 0.8, 0.04, 0.9);
}

// 3. Evening Felt: E-flat major, slow 4/4 at 58, warm pads held across chord changes, a gentle bass
// and a sparse felt-piano tune.
std::vector<int16_t> EveningFelt() {
    const Key key{63, {0, 2, 4, 5, 7, 9, 11}};
    MelodyStyle style{4, 2, 2, 2, 10, 4, {}, {}};
    style.rhythms = {{{0, 2}, {2, 2}}, {{0, 3}, {3, 1}}, {{0, 4}}, {{0, 1}, {1, 1}, {2, 2}}, {{0, 2}, {2, 1}, {3, 1}}};
    style.cadences = {{{0, 2}, {2, 2}}, {{0, 1}, {1, 1}, {2, 2}}};
    const Phrase a{{0, 0, 2, 2, 3, 3, 4, 4}, 0x5eed0301, 4, true};
    const Phrase a2{{0, 0, 5, 5, 3, 1, 4, 0}, 0x5eed0301, 0, true};
    const Phrase b{{3, 3, 4, 4, 2, 2, 5, 5}, 0x5eed0302, 5, true};
    const Phrase ending{{0, 0}, 0x5eed0303, 0, true};
    Score score = LayOut(style, {a, a2, b, a2, ending});
    double beat = 60.0 / 58;
    Track track(size_t((kLead + score.beats * beat + kTail + 0.6) * kRate), 0.0f);
    Rng pads{0x0003f00d}, human{0x0003beef};

    // Pad notes that stay in the next chord are held on, not struck again.
    struct Held {
        int pitch;
        double start;
    };
    std::vector<Held> held;
    std::vector<int> voicing;
    double end = score.beats * beat + kTail * 0.5;
    for (const ChordSpan& c : score.chords) {
        double t = kLead + c.beat * beat;
        voicing = VoiceChord(key, c.root, true, 48, 67, voicing);
        std::vector<Held> next;
        for (const Held& h : held) {
            if (std::find(voicing.begin(), voicing.end(), h.pitch) != voicing.end()) next.push_back(h);
            else AddPad(track, h.start, t - h.start + 0.3, h.pitch, 0.17, pads);
        }
        for (int p : voicing) {
            bool kept = false;
            for (const Held& h : next) kept = kept || h.pitch == p;
            if (!kept) next.push_back({p, t});
        }
        held = next;
        // Root on the change, the fifth below it half way through a long chord.
        AddBass(track, t + Nudge(human), std::min(c.beats, 2.0) * beat, BassPitch(key, c.root, 39), 0.4);
        if (c.beats >= 4) AddBass(track, t + 2 * beat + Nudge(human), 2 * beat, BassPitch(key, c.root + 4, 34), 0.26);
    }
    for (const Held& h : held) AddPad(track, h.start, kLead + end - h.start, h.pitch, 0.17, pads);
    for (const MelodyNote& n : score.melody) {
        bool final = n.beat + n.beats >= score.beats - 0.01;
        double length = n.beats * beat + (final ? kTail : 0);
        AddFeltPiano(track, kLead + n.beat * beat + Nudge(human), length, Pitch(key, n.degree), 0.8 * n.velocity);
    }
    return Finish(track, 0.45, 0.84, 0.04, 1.0);
}

// 4. Music Box: A major, 6/8 (counted in quavers, 0.28 s each), a music-box tune over a light
// oom-pah of lower tines, with a far chime at the turn of each phrase.
std::vector<int16_t> MusicBox() {
    const Key key{69, {0, 2, 4, 5, 7, 9, 11}};
    MelodyStyle style{6, 1, 3, 4, 12, 9, {}, {}};
    style.rhythms = {{{0, 2}, {2, 1}, {3, 2}, {5, 1}}, {{0, 1}, {1, 1}, {2, 1}, {3, 3}},
                     {{0, 3}, {3, 1}, {4, 1}, {5, 1}}, {{0, 2}, {2, 1}, {3, 3}},
                     {{0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}}};
    style.cadences = {{{0, 3}, {3, 3}}, {{0, 2}, {2, 1}, {3, 3}}, {{0, 6}}};
    const Phrase intro{{0}, 0, 0, false};
    const Phrase a{{0, 3, 0, 4, 0, 3, 4, 4}, 0x5eed0401, 4, true};
    const Phrase a2{{0, 3, 0, 4, 5, 1, 4, 0}, 0x5eed0401, 0, true};
    const Phrase b{{3, 0, 3, 4, 5, 2, 1, 4}, 0x5eed0402, 4, true};
    const Phrase b2{{3, 0, 3, 4, 5, 1, 4, 0}, 0x5eed0402, 0, true};
    const Phrase coda{{3, 0}, 0x5eed0403, 0, true};
    std::vector<Phrase> form = {intro, a, a2, b, b2, a2, coda};
    Score score = LayOut(style, form);
    double eighth = 0.28;
    Track track(size_t((kLead + score.beats * eighth + kTail) * kRate), 0.0f);
    Rng human{0x0004beef}, chimes{0x0004c0de};

    int lastSection = -1;
    for (const ChordSpan& c : score.chords) {
        int bass = BassPitch(key, c.root, 45);
        std::vector<int> v = VoiceChord(key, c.root, false, 57, 71, {});
        for (double bar = 0; bar < c.beats - 0.01; bar += 6) {
            double t = kLead + (c.beat + bar) * eighth;
            bool final = c.beat + bar + 6 >= score.beats - 0.01;
            // Root on the first quaver, chord tones on the third, fourth and sixth.
            AddMusicBox(track, t + Nudge(human), bass, 0.3);
            if (!final) {
                AddMusicBox(track, t + 2 * eighth + Nudge(human), v[1], 0.16);
                AddMusicBox(track, t + 3 * eighth + Nudge(human), v[2], 0.19);
                AddMusicBox(track, t + 5 * eighth + Nudge(human), v[1], 0.16);
            }
            if (c.section != lastSection || Uniform(chimes) < 0.15) {
                const int pentatonic[5] = {0, 1, 2, 4, 5};
                int degree = 14 + pentatonic[PickIndex(chimes, 5)];
                AddChime(track, t + 0.02, Pitch(key, degree) - 12, 0.1);
            }
            lastSection = c.section;
        }
    }
    for (const MelodyNote& n : score.melody)
        AddMusicBox(track, kLead + n.beat * eighth + Nudge(human), Pitch(key, n.degree), 0.85 * n.velocity);
    return Finish(track, 0.4, 0.8, 0.04, 0.9);
}

}  // namespace

std::vector<uint8_t> MakeMusicPiece(int index, std::string* file, std::string* title) {
    static const char* const kFiles[kMusicPieces] = {"Track1.wav", "Track2.wav", "Track3.wav", "Track4.wav"};
    static const char* const kTitles[kMusicPieces] = {"Morning Table", "Harp by the Window", "Evening Felt",
                                                      "Music Box"};
    if (index < 0 || index >= kMusicPieces) return {};
    FillSineTable();
    std::vector<int16_t> samples = index == 0   ? MorningTable()
                                   : index == 1 ? HarpByTheWindow()
                                   : index == 2 ? EveningFelt()
                                                : MusicBox();
    if (file) *file = kFiles[index];
    if (title) *title = kTitles[index];
    return MakeWaveFile(samples, kRate);
}

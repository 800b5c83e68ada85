// The game's four music pieces in the built game folder: plain PCM files that MCI's waveaudio device
// plays anywhere, the right length and size, clean (no clipping, no DC, no hiss at the top of the
// band), never falling silent, quiet at both ends so replaying from the start is seamless, four
// different pieces, and made the same again by the media tool, which lists them.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const std::string kMusic = std::string(TAVIREL_DIST_DIR) + "/Music";
const char* const kFiles[4] = {"Track1.wav", "Track2.wav", "Track3.wav", "Track4.wav"};
const char* const kTitles[4] = {"Morning Table", "Harp by the Window", "Evening Felt", "Music Box"};
constexpr int kRate = 11025;

std::string ReadBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

uint32_t U32(const std::string& s, size_t at) {
    uint32_t v = 0;
    if (at + 4 <= s.size()) std::memcpy(&v, &s[at], 4);
    return v;
}

uint16_t U16(const std::string& s, size_t at) {
    uint16_t v = 0;
    if (at + 2 <= s.size()) std::memcpy(&v, &s[at], 2);
    return v;
}

// The samples of a 44-byte-header PCM file, scaled to -1..1; empty when the header is not that.
std::vector<double> Samples(const std::string& wave) {
    std::vector<double> out;
    if (wave.size() < 44 || wave.compare(36, 4, "data") != 0) return out;
    size_t count = std::min<size_t>(U32(wave, 40), wave.size() - 44) / 2;
    out.resize(count);
    for (size_t i = 0; i < count; ++i) {
        int16_t v;
        std::memcpy(&v, &wave[44 + 2 * i], 2);
        out[i] = v / 32768.0;
    }
    return out;
}

double RmsDb(const std::vector<double>& x, size_t from, size_t to) {
    double e = 0;
    for (size_t i = from; i < to; ++i) e += x[i] * x[i];
    return 10 * std::log10(e / double(to - from) + 1e-24);
}

void Fft(std::vector<std::complex<double>>& a) {
    size_t n = a.size();
    for (size_t i = 1, j = 0; i < n; ++i) {
        size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(a[i], a[j]);
    }
    for (size_t len = 2; len <= n; len <<= 1) {
        std::complex<double> step = std::polar(1.0, -2 * M_PI / double(len));
        for (size_t i = 0; i < n; i += len) {
            std::complex<double> w = 1;
            for (size_t k = 0; k < len / 2; ++k) {
                std::complex<double> u = a[i + k], v = a[i + k + len / 2] * w;
                a[i + k] = u + v;
                a[i + k + len / 2] = u - v;
                w *= step;
            }
        }
    }
}

constexpr size_t kFrame = 4096;

// The power spectrum of the whole piece, summed over Hann-windowed frames.
std::vector<double> PowerSpectrum(const std::vector<double>& x) {
    std::vector<double> power(kFrame / 2, 0.0);
    std::vector<std::complex<double>> a(kFrame);
    for (size_t start = 0; start + kFrame <= x.size(); start += kFrame) {
        for (size_t i = 0; i < kFrame; ++i) a[i] = x[start + i] * (0.5 - 0.5 * std::cos(2 * M_PI * double(i) / kFrame));
        Fft(a);
        for (size_t k = 0; k < kFrame / 2; ++k) power[k] += std::norm(a[k]);
    }
    return power;
}

double BinHz(size_t k) { return double(k) * kRate / double(kFrame); }

// Energy per pitch class (C = 0) between 150 Hz and 2 kHz, where the bins are finer than a semitone.
std::vector<double> PitchClasses(const std::vector<double>& power) {
    std::vector<double> classes(12, 0.0);
    for (size_t k = 1; k < power.size(); ++k) {
        double hz = BinHz(k);
        if (hz < 150 || hz > 2000) continue;
        long midi = std::lround(69 + 12 * std::log2(hz / 440));
        classes[size_t(midi % 12)] += power[k];
    }
    return classes;
}

double Cosine(const std::vector<double>& a, const std::vector<double>& b) {
    double ab = 0, aa = 0, bb = 0;
    for (size_t i = 0; i < a.size() && i < b.size(); ++i) {
        ab += a[i] * b[i];
        aa += a[i] * a[i];
        bb += b[i] * b[i];
    }
    return ab / std::sqrt(aa * bb + 1e-30);
}

struct Piece {
    std::string bytes;
    std::vector<double> samples;
};

class GameMusic : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        for (int i = 0; i < 4; ++i) {
            pieces[i].bytes = ReadBytes(kMusic + "/" + kFiles[i]);
            pieces[i].samples = Samples(pieces[i].bytes);
        }
    }
    void SetUp() override {
        for (int i = 0; i < 4; ++i)
            ASSERT_FALSE(pieces[i].samples.empty()) << "no PCM piece at " << kMusic << "/" << kFiles[i];
    }
    static Piece pieces[4];
};

Piece GameMusic::pieces[4];

}  // namespace

TEST_F(GameMusic, EachPieceIsAPlainMonoSixteenBitPcmWaveAt11025) {
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(kFiles[i]);
        const std::string& w = pieces[i].bytes;
        ASSERT_GE(w.size(), 44u);
        EXPECT_EQ(w.substr(0, 4), "RIFF");
        EXPECT_EQ(U32(w, 4), w.size() - 8);
        EXPECT_EQ(w.substr(8, 8), "WAVEfmt ");
        EXPECT_EQ(U32(w, 16), 16u);
        EXPECT_EQ(U16(w, 20), 1);  // PCM
        EXPECT_EQ(U16(w, 22), 1);  // mono
        EXPECT_EQ(U32(w, 24), uint32_t(kRate));
        EXPECT_EQ(U32(w, 28), uint32_t(kRate) * 2);
        EXPECT_EQ(U16(w, 32), 2);
        EXPECT_EQ(U16(w, 34), 16);
        EXPECT_EQ(w.substr(36, 4), "data");
        EXPECT_EQ(U32(w, 40), w.size() - 44);
    }
}

TEST_F(GameMusic, EachPieceLastsBetween65And85SecondsAndAllFourStayUnderEightMegabytes) {
    size_t total = 0;
    for (int i = 0; i < 4; ++i) {
        double seconds = double(pieces[i].samples.size()) / kRate;
        EXPECT_GE(seconds, 65.0) << kFiles[i];
        EXPECT_LE(seconds, 85.0) << kFiles[i];
        total += pieces[i].bytes.size();
    }
    EXPECT_LT(total, 8u * 1000u * 1000u);
}

TEST_F(GameMusic, NoPieceClipsOrCarriesADcOffset) {
    for (int i = 0; i < 4; ++i) {
        double peak = 0, sum = 0;
        for (double v : pieces[i].samples) {
            peak = std::max(peak, std::fabs(v));
            sum += v;
        }
        // Normalised near -3 dBFS: clear of full scale, yet not left faint.
        EXPECT_LT(peak, 0.8) << kFiles[i];
        EXPECT_GT(peak, 0.5) << kFiles[i];
        EXPECT_LT(std::fabs(sum / double(pieces[i].samples.size())), 0.001) << kFiles[i];
    }
}

TEST_F(GameMusic, NoPieceFallsSilentForMoreThanTwoSeconds) {
    const size_t window = kRate / 10;
    for (int i = 0; i < 4; ++i) {
        const std::vector<double>& x = pieces[i].samples;
        int run = 0, longest = 0;
        for (size_t from = 0; from + window <= x.size(); from += window) {
            run = RmsDb(x, from, from + window) < -50 ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        EXPECT_LE(longest, 20) << kFiles[i] << ": " << longest / 10.0 << " s of silence";
    }
}

TEST_F(GameMusic, EachPieceStartsAndEndsQuietlySoReplayingItIsSeamless) {
    const size_t edge = kRate / 20;  // 50 ms
    for (int i = 0; i < 4; ++i) {
        const std::vector<double>& x = pieces[i].samples;
        EXPECT_LT(RmsDb(x, 0, edge), -50) << kFiles[i];
        EXPECT_LT(RmsDb(x, x.size() - edge, x.size()), -50) << kFiles[i];
        EXPECT_LT(std::fabs(x.back() - x.front()), 0.002) << kFiles[i];
        // ...but the music itself is well under way within a second of each end.
        EXPECT_GT(RmsDb(x, kRate, 2 * kRate), -35) << kFiles[i];
        EXPECT_GT(RmsDb(x, x.size() - 3 * kRate, x.size() - 2 * kRate), -45) << kFiles[i];
    }
}

TEST_F(GameMusic, NoPieceHasMoreThanATraceOfSoundAboveFourKilohertz) {
    for (int i = 0; i < 4; ++i) {
        std::vector<double> power = PowerSpectrum(pieces[i].samples);
        double total = 0, high = 0;
        for (size_t k = 0; k < power.size(); ++k) {
            total += power[k];
            if (BinHz(k) > 4000) high += power[k];
        }
        EXPECT_LT(high / total, 1e-4) << kFiles[i];
    }
}

TEST_F(GameMusic, TheFourPiecesDifferInKeyAndInTheirRiseAndFall) {
    std::vector<double> classes[4], envelope[4];
    for (int i = 0; i < 4; ++i) {
        classes[i] = PitchClasses(PowerSpectrum(pieces[i].samples));
        const std::vector<double>& x = pieces[i].samples;
        for (size_t from = 0; from + kRate <= x.size() && envelope[i].size() < 64; from += kRate)
            envelope[i].push_back(RmsDb(x, from, from + kRate));
        double mean = 0;
        for (double v : envelope[i]) mean += v / double(envelope[i].size());
        for (double& v : envelope[i]) v -= mean;
    }
    for (int i = 0; i < 4; ++i)
        for (int j = i + 1; j < 4; ++j) {
            EXPECT_LT(Cosine(classes[i], classes[j]), 0.9) << kFiles[i] << " and " << kFiles[j] << " share their notes";
            EXPECT_LT(Cosine(envelope[i], envelope[j]), 0.8)
                << kFiles[i] << " and " << kFiles[j] << " rise and fall alike";
        }
}

TEST(MusicTool, ListsEachPieceAndMakesTheSameFilesAgain) {
    fs::path dir = fs::temp_directory_path() / ("tavirel_music_" + std::to_string(::getpid()));
    std::string command = std::string(TAVIREL_MEDIAGEN) + " music " + dir.string();
    FILE* pipe = ::popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string listing;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe)) listing += buffer;
    EXPECT_EQ(::pclose(pipe), 0);

    std::istringstream lines(listing);
    std::string line;
    int count = 0;
    while (std::getline(lines, line)) {
        ASSERT_LT(count, 4) << listing;
        SCOPED_TRACE(line);
        std::string made = ReadBytes(dir / kFiles[count]);
        EXPECT_EQ(made, ReadBytes(kMusic + "/" + kFiles[count])) << "a second run composed something else";
        long seconds = std::lround(double(made.size() - 44) / 2 / kRate);
        char length[48];
        std::snprintf(length, sizeof length, " %ld:%02ld ", seconds / 60, seconds % 60);
        EXPECT_EQ(line.rfind(kFiles[count], 0), 0u);
        EXPECT_NE(line.find(kTitles[count]), std::string::npos);
        EXPECT_NE(line.find(length), std::string::npos);
        EXPECT_NE(line.find(" " + std::to_string(made.size()) + " bytes"), std::string::npos);
        ++count;
    }
    EXPECT_EQ(count, 4) << listing;
    fs::remove_all(dir);
}

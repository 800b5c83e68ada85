// The interface sounds, synthesised: short, soft and free of clicks (each note fades in over a
// millisecond and dies away exponentially).
#include <cmath>
#include <cstring>

#include "mediagen/media.h"

namespace {

constexpr int kRate = 22050;

struct Partial {
    double frequency, amplitude, decay;  // decay: time constant in seconds
};

std::vector<uint8_t> RenderWave(double seconds, const std::vector<Partial>& partials, double noise, double noiseDecay) {
    int count = int(seconds * kRate);
    std::vector<int16_t> samples(size_t(count), 0);
    uint32_t state = 12345;
    double lowpass = 0;
    for (int i = 0; i < count; ++i) {
        double t = double(i) / kRate, v = 0;
        for (const Partial& p : partials) v += p.amplitude * std::exp(-t / p.decay) * std::sin(2 * M_PI * p.frequency * t);
        if (noise > 0) {
            state = state * 1664525u + 1013904223u;
            double white = (state >> 8) / double(1u << 24) * 2 - 1;
            lowpass += 0.35 * (white - lowpass);
            v += noise * std::exp(-t / noiseDecay) * lowpass;
        }
        double attack = std::min(1.0, t / 0.001), release = std::min(1.0, (seconds - t) / 0.004);
        v *= attack * release;
        samples[size_t(i)] = int16_t(std::lround(std::max(-1.0, std::min(1.0, v)) * 32767));
    }
    return MakeWaveFile(samples, kRate);
}

}  // namespace

std::vector<uint8_t> MakeWaveFile(const std::vector<int16_t>& samples, int rate) {
    uint32_t dataBytes = uint32_t(samples.size()) * 2;
    std::vector<uint8_t> out(44 + dataBytes);
    auto put32 = [&](size_t at, uint32_t v) { std::memcpy(&out[at], &v, 4); };
    auto put16 = [&](size_t at, uint16_t v) { std::memcpy(&out[at], &v, 2); };
    std::memcpy(&out[0], "RIFF", 4);
    put32(4, 36 + dataBytes);
    std::memcpy(&out[8], "WAVEfmt ", 8);
    put32(16, 16);
    put16(20, 1);  // PCM
    put16(22, 1);  // mono
    put32(24, uint32_t(rate));
    put32(28, uint32_t(rate) * 2);
    put16(32, 2);
    put16(34, 16);
    std::memcpy(&out[36], "data", 4);
    put32(40, dataBytes);
    if (dataBytes) std::memcpy(&out[44], samples.data(), dataBytes);
    return out;
}

// A light wooden tick, like a fingertip on a piece: high and very short.
std::vector<uint8_t> MakeHoverSound() {
    return RenderWave(0.06, {{1760, 0.16, 0.010}, {2637, 0.08, 0.006}, {4400, 0.03, 0.003}}, 0.10, 0.004);
}

// A warm "clack" of a piece falling into place: a marimba-like bar note over a soft knock.
std::vector<uint8_t> MakeClickSound() {
    return RenderWave(0.16, {{784, 0.34, 0.045}, {784 * 3.93, 0.10, 0.012}, {196, 0.22, 0.020}}, 0.22, 0.006);
}

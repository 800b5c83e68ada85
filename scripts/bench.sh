#!/usr/bin/env bash
# The benchmarks: a native Release build in build/bench (no tests), then the benchmark program.
# Extra arguments go to it, e.g. `bash scripts/bench.sh --benchmark_filter=Compose`.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/install-deps.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAVIREL_BENCH=ON -DTAVIREL_TESTS=OFF >/dev/null
cmake --build build/bench --target tavirel_bench
exec build/bench/tavirel_bench "$@"

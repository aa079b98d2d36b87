# The two commands that matter: `make demo` and `make test`. Both set up what is missing and build first.

BUILD := build/release
JOBS := $(shell nproc)
THREADED := platform host hardware preprocessor regulation bench

.PHONY: demo test bench mutants format lint layers asan tsan fuzz fuzz-corpus setup build clean

demo: build
	@mkdir -p demo
	$(BUILD)/src/bench/kalvio-bench demo --out demo --trace demo/exchanges.txt --trace-bytes
	@echo "every exchange with the unit, with its bytes: demo/exchanges.txt"

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

setup:
	tools/setup.sh

build: setup
	@cmake --preset release >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

# The benchmarks, printed as ratios within one run. On one processor, since where the system puts two threads
# would otherwise decide what waking one costs.
bench: build
	@cmake --preset release -DKALVIO_BENCHMARKS=ON >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)
	@for program in $(BUILD)/benchmarks/*_benchmark; do echo "== $$program"; taskset -c 0 $$program || exit 1; done

# The tests under the address and undefined-behaviour sanitizers, and the threaded ones under the thread
# sanitizer.
asan:
	tools/setup.sh --checks
	@cmake --preset asan >/dev/null
	@cmake --build build/asan -j $(JOBS)
	cd build/asan && ctest --output-on-failure -j $(JOBS)

tsan:
	tools/setup.sh --checks
	@cmake --preset tsan >/dev/null
	@cmake --build build/tsan -j $(JOBS) --target $(patsubst %,kalvio_%_tests,$(THREADED))
	cd build/tsan && for folder in $(THREADED); do TSAN_OPTIONS=halt_on_error=1 tests/kalvio_$${folder}_tests --gtest_filter='*Thread*' --gtest_brief=1 || exit 1; done

# Plants N random faults in the sources, one at a time, and tells which the tests catch.
N ?= 100
SEED ?= 1
mutants: setup
	tools/mutants.py -n $(N) -s $(SEED) -j $(JOBS)

# Every fuzz target for so many seconds, under libFuzzer and the sanitizers. The second keeps the best of what such
# runs found in the tree.
SECONDS ?= 60
fuzz:
	tools/setup.sh --fuzz
	@cmake --preset fuzz >/dev/null
	@cmake --build build/fuzz -j $(JOBS)
	tools/fuzz.py --seconds $(SECONDS) --jobs $(JOBS)

fuzz-corpus:
	tools/fuzz.py --keep --jobs $(JOBS)

format:
	tools/format.sh --fix

lint:
	tools/setup.sh --checks
	tools/format.sh
	tools/lint.sh

layers:
	python3 tools/layers.py

clean:
	rm -rf build demo

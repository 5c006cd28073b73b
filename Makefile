# Entry points; the two set-up commands of the README are `make demo` and `make test`.
# Only the development targets install packages; `make build` and `make install`
# use what the machine has, as a packager's sandbox expects.
JOBS ?= $(shell nproc)
BUILD ?= build
RELEASE_BUILD ?= build-release
SAN_BUILD ?= build-sanitize
PREFIX ?= /usr/local
CMAKE_FLAGS ?=

.PHONY: all deps build demo test test-package test-sanitize test-tsan bench fuzz fuzz-coverage fuzz-seeds install format clean

all: build

deps:
	@./scripts/install-deps

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DORU_WERROR=ON $(CMAKE_FLAGS)

build: $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j $(JOBS)
	@# For editors; a read-only source tree simply goes without it.
	@if [ -w . ]; then ln -sfn $(BUILD)/compile_commands.json compile_commands.json 2>/dev/null || true; fi

demo: deps
	$(MAKE) build
	./$(BUILD)/tools/oru demo

test: deps
	$(MAKE) build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The installed package, moved, and its consumers (CMake, C++11, pkg-config,
# subproject) run without LD_LIBRARY_PATH; the public headers' C++14 stop and costs.
test-package: deps
	./tests/package/check

# The header checks run the compiler, not our code: make test runs them.
test-sanitize: deps
	cmake -S . -B $(SAN_BUILD) -DORU_WERROR=ON -DORU_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
		ctest --output-on-failure -j $(JOBS) -E "^headers[.]"

# The thread tests under ThreadSanitizer.
test-tsan: deps
	cmake -S . -B build-tsan -DORU_WERROR=ON -DORU_TSAN=ON -DCMAKE_BUILD_TYPE=Debug -DORU_BUILD_TOOLS=OFF $(CMAKE_FLAGS)
	cmake --build build-tsan -j $(JOBS) --target threads_test
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$(CURDIR)/tests/tsan.supp" ./build-tsan/tests/threads_test

bench: deps
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DORU_BUILD_BENCH=ON -DORU_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build build-bench -j $(JOBS)
	ORU_BENCH_MIN_TIME=$(BENCH_MIN_TIME) ORU_BENCH_REPETITIONS=$(BENCH_REPETITIONS) ./bench/report build-bench
	@# Python beside C++, where the module is built: a section of its own in RESULTS.md.
	@if [ -d build-bench/python/oru ]; then \
		ORU_BENCH_REPETITIONS=$(BENCH_REPETITIONS) /usr/bin/python3 bench/python_bench.py build-bench; \
	fi

# Seconds per benchmark case and repetitions of each (bench/report keeps the
# least CPU time): short, so that the whole run stays within minutes.
BENCH_MIN_TIME ?= 0.1
BENCH_REPETITIONS ?= 5

FUZZ_SECONDS ?= 60
# Then a short run with inputs up to FUZZ_LARGE_LEN bytes, so that records of
# 65,535 children or megabyte arrays are explored too; FUZZ_MAX_LEN sets the
# length of the main run (libFuzzer's own default when empty).
FUZZ_LARGE_SECONDS ?= 10
FUZZ_LARGE_LEN ?= 1048576
FUZZ_MAX_LEN ?=
FUZZ_TARGETS ?= $(patsubst fuzz/%.cpp,%,$(filter-out fuzz/record.h,$(wildcard fuzz/*.cpp)))

fuzz: deps
	cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DORU_BUILD_FUZZ=ON -DORU_BUILD_TESTS=OFF -DORU_BUILD_TOOLS=OFF $(CMAKE_FLAGS)
	cmake --build build-fuzz -j $(JOBS)
	@for t in $(FUZZ_TARGETS); do \
		mkdir -p build-fuzz/corpus/$$t fuzz/corpus/$$t; \
		echo "fuzz: $$t for $(FUZZ_SECONDS)s"; \
		./build-fuzz/fuzz/$$t -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 \
			$(if $(FUZZ_MAX_LEN),-max_len=$(FUZZ_MAX_LEN)) \
			build-fuzz/corpus/$$t fuzz/corpus/$$t 2>build-fuzz/$$t.log || { tail -40 build-fuzz/$$t.log; exit 1; }; \
		grep -E 'stat::number_of_executed_units|cov:' build-fuzz/$$t.log | tail -2; \
		if [ "$(FUZZ_LARGE_SECONDS)" != 0 ]; then \
			echo "fuzz: $$t with inputs up to $(FUZZ_LARGE_LEN) bytes for $(FUZZ_LARGE_SECONDS)s"; \
			./build-fuzz/fuzz/$$t -max_total_time=$(FUZZ_LARGE_SECONDS) -max_len=$(FUZZ_LARGE_LEN) -len_control=0 \
				-rss_limit_mb=4096 -print_final_stats=1 build-fuzz/corpus/$$t fuzz/corpus/$$t \
				2>build-fuzz/$$t-large.log || { tail -40 build-fuzz/$$t-large.log; exit 1; }; \
			grep -E 'stat::number_of_executed_units|cov:' build-fuzz/$$t-large.log | tail -2; \
		fi; \
	done

# Which lines of the libraries the fuzz corpora reach: every input of the
# corpora under FUZZ_CORPUS_ROOTS is run once under clang's source coverage.
# Each library and program writes its own profile (%m), merged afterwards.
FUZZ_CORPUS_ROOTS ?= fuzz/corpus build-fuzz/corpus
COV := build-fuzzcov
COV_FLAGS := -fprofile-instr-generate -fcoverage-mapping
fuzz-coverage: deps
	cmake -S . -B $(COV) -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DORU_BUILD_FUZZ=ON -DORU_BUILD_TESTS=OFF -DORU_BUILD_TOOLS=OFF \
		-DCMAKE_CXX_FLAGS="$(COV_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(COV_FLAGS)" \
		-DCMAKE_SHARED_LINKER_FLAGS="$(COV_FLAGS)" $(CMAKE_FLAGS)
	cmake --build $(COV) -j $(JOBS)
	rm -f $(COV)/*.profraw
	@for t in $(FUZZ_TARGETS); do \
		dirs=$$(for r in $(FUZZ_CORPUS_ROOTS); do [ -d $$r/$$t ] && echo $$r/$$t; done); \
		LLVM_PROFILE_FILE=$(COV)/$$t-%m.profraw ./$(COV)/fuzz/$$t -runs=0 $$dirs \
			2>$(COV)/$$t.log || { tail -20 $(COV)/$$t.log; exit 1; }; \
		grep -E '^#[0-9]+.*DONE' $(COV)/$$t.log | sed "s/^/$$t: /"; \
	done
	llvm-profdata merge -sparse -o $(COV)/fuzz.profdata $(COV)/*.profraw
	llvm-cov report -instr-profile=$(COV)/fuzz.profdata $(COV)/fuzz/deserialize \
		$(foreach t,$(filter-out deserialize,$(FUZZ_TARGETS)),-object $(COV)/fuzz/$(t)) \
		-object $(COV)/legacy/liboru.so -object $(COV)/lanpath/liblanpath.so \
		-object $(COV)/vintor/libvintor.so legacy/src lanpath/src vintor/src

# Seeds for the fuzzers, made by the program from every family it can encode.
fuzz-seeds: deps
	$(MAKE) build
	./fuzz/make-seeds $(BUILD)/tools/oru fuzz/corpus

# A Release build of the libraries and the program, without tests or -Werror.
install:
	cmake -S . -B $(RELEASE_BUILD) -DCMAKE_BUILD_TYPE=Release -DORU_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build $(RELEASE_BUILD) -j $(JOBS)
	cmake --install $(RELEASE_BUILD) --prefix $(PREFIX)

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(RELEASE_BUILD) $(SAN_BUILD) build-package build-bench build-fuzz build-fuzzcov build-tsan compile_commands.json

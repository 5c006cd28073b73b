# Entry points; the two set-up commands of the README are `make demo` and `make test`.
JOBS ?= $(shell nproc)
BUILD ?= build
SAN_BUILD ?= build-sanitize
PREFIX ?= /usr/local
CMAKE_FLAGS ?=

.PHONY: all deps build demo test test-sanitize bench install format clean

all: build

deps:
	@./scripts/install-deps

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DORU_WERROR=ON $(CMAKE_FLAGS)

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j $(JOBS)
	@ln -sf $(BUILD)/compile_commands.json compile_commands.json

demo: build
	./$(BUILD)/tools/oru demo

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B $(SAN_BUILD) -DORU_WERROR=ON -DORU_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
		ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DORU_BUILD_BENCH=ON -DORU_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build build-bench -j $(JOBS)
	@for b in build-bench/bench/*_bench; do [ -x "$$b" ] && "$$b" || exit 1; done

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(SAN_BUILD) build-bench compile_commands.json

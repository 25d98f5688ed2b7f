# Vellumar: set-up, build, run, test and benchmark.
BUILD ?= build
JOBS ?= 2
CMAKE_BUILD_TYPE ?= RelWithDebInfo

.PHONY: setup configure build run test bench clean

setup:
	@scripts/setup

configure: setup
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(CMAKE_BUILD_TYPE) > /dev/null

build: configure
	@cmake --build $(BUILD) -j$(JOBS)

run: build
	$(BUILD)/bin/vellumar-cli version

test: build
	cd $(BUILD) && ctest -j$(JOBS) --output-on-failure --timeout 600

bench: build
	bench/run $(BUILD)

clean:
	rm -rf $(BUILD)

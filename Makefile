# Vellumar: set-up, build, run, test and benchmark.
BUILD ?= build
JOBS ?= 2
CMAKE_BUILD_TYPE ?= RelWithDebInfo

.PHONY: setup configure build run test bench clean

setup:
	@scripts/setup

# ccache, when installed, keeps rebuilds and several checkouts of the tree cheap.
CCACHE := $(shell command -v ccache 2>/dev/null)
export CCACHE_BASEDIR := $(CURDIR)
LAUNCHER := $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE))

configure: setup
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(CMAKE_BUILD_TYPE) $(LAUNCHER) > /dev/null

build: configure
	@cmake --build $(BUILD) -j$(JOBS)

# The desktop program. Without a display (no DISPLAY nor WAYLAND_DISPLAY) it runs on a virtual
# one, so that it still starts.
run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then \
	  $(BUILD)/bin/vellumar; \
	else \
	  echo "run: no display (DISPLAY and WAYLAND_DISPLAY are unset); starting under xvfb-run"; \
	  xvfb-run -a -s "-screen 0 1400x1000x24" $(BUILD)/bin/vellumar; \
	fi

test: build
	cd $(BUILD) && ctest -j$(JOBS) --output-on-failure --timeout 600

bench: build
	bench/run $(BUILD)

clean:
	rm -rf $(BUILD)

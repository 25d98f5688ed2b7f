# Vellumar: set-up, build, run, test and benchmark.
BUILD ?= build
JOBS ?= 2
CMAKE_BUILD_TYPE ?= RelWithDebInfo

.PHONY: setup configure build run install package test test-asan fuzz fuzz-adif bench clean

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

# The executables, the read-only data, the help pages, the menu entry, icons and metainfo under
# PREFIX (bin/, share/vellumar/, share/applications/...): `make install PREFIX=~/.local`.
PREFIX ?= /usr/local
install: build
	cmake --install $(BUILD) --prefix "$(PREFIX)"

# The Debian package vellumar_<version>_<arch>.deb in $(BUILD): `apt install ./vellumar_*.deb`.
package: build
	cd $(BUILD) && cpack -G DEB

# The whole suite on a sanitized build (AddressSanitizer with leak checks, and
# UndefinedBehaviorSanitizer): `make test-asan`. The options reach the test programs that CMake
# runs to list their tests, too.
ASAN_BUILD ?= build-asan
SANITIZER_ENV := ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 \
  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 \
  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

# The whole suite, then the logic suites again under the sanitizers (scripts/test-sanitized).
SANITIZED_BUILD ?= build-sanitized
test: build
	cd $(BUILD) && ctest -j$(JOBS) --output-on-failure --timeout 600
	scripts/test-sanitized $(SANITIZED_BUILD) $(JOBS)

test-asan: setup
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DVELLUMAR_SANITIZE=ON $(LAUNCHER) > /dev/null
	@$(SANITIZER_ENV) cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && $(SANITIZER_ENV) ctest -j$(JOBS) --output-on-failure --timeout 600

# libFuzzer on the parsers that take text from outside, in a clang build of its own: each
# target runs FUZZ_SECONDS from its seed corpus (fuzz/corpus/<target>); not part of `make test`.
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
fuzz: setup
	@cmake -S . -B $(FUZZ_BUILD) -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVELLUMAR_FUZZ=ON $(LAUNCHER) > /dev/null
	@cmake --build $(FUZZ_BUILD) -j$(JOBS) --target vellumar_fuzzers
	fuzz/run $(FUZZ_BUILD) $(FUZZ_SECONDS)

# The ADIF tokeniser and the import behind it (the `log` command and the file import with an
# Abort), alone: `make fuzz-adif FUZZ_SECONDS=300`.
fuzz-adif: setup
	@cmake -S . -B $(FUZZ_BUILD) -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVELLUMAR_FUZZ=ON $(LAUNCHER) > /dev/null
	@cmake --build $(FUZZ_BUILD) -j$(JOBS) --target fuzz_adif_parser fuzz_adif_import
	fuzz/run $(FUZZ_BUILD) $(FUZZ_SECONDS) fuzz_adif_parser fuzz_adif_import

bench: build
	bench/run $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) $(SANITIZED_BUILD)

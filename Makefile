# The four things people do. Each sets up what it needs by itself; see CONTRIBUTING.md.
.PHONY: run test bench fuzz package setup native native-asan win-x64 win-x86 lint clean

SHELL := /bin/bash
# By the environment, so that quotes and blanks in the name stay what they are.
export DOC
BUILD_TARGETS := native native-asan win-x64 win-x86

# The program in a window; with DOC=song.txt it opens that song. Without a display it does the
# main job by itself and tells what came of it.
run: win-x64 native
	@tools/run.sh "$$DOC"

test: native-asan native win-x64 win-x86 lint
	@tools/test.sh

bench: native win-x64
	@tools/bench.sh

# Each fuzzer for FUZZ_SECONDS; what it finds is left in build/fuzz.
fuzz: setup
	@tools/fuzz.sh

package:
	@echo "make package: there is no installer yet" >&2; exit 1

setup:
	@tools/setup.sh

$(BUILD_TARGETS): setup
	@mkdir -p build
	@[ -e build/$@/build.ninja ] || cmake --preset $@ >build/$@.configure.log 2>&1 || \
	    { cat build/$@.configure.log; exit 1; }
	@cmake --build --preset $@

lint: setup native
	@tools/lint.sh

clean:
	rm -rf build

# The four things people do. Each sets up what it needs by itself; see CONTRIBUTING.md.
.PHONY: run test bench fuzz faults rtf-corpus soak paper package test-x86 setup native native-asan win-x64 win-x86 lint clean

SHELL := /bin/bash
# By the environment, so that quotes and blanks in the name stay what they are.
export DOC
BUILD_TARGETS := native native-asan win-x64 win-x86

# The program in a window; with DOC=song.txt it opens that song. Without a display it does the
# main job by itself and tells what came of it.
run: win-x64 native
	@tools/run.sh "$$DOC"

test: native-asan win-x64 win-x86
	@tools/test.sh

bench: native win-x64
	@tools/bench.sh

# Each fuzzer for FUZZ_SECONDS; what it finds is left in build/fuzz.
fuzz: setup
	@tools/fuzz.sh

# The program killed and its disk taken away, many times over.
faults: win-x64 native
	@cmake --build --preset win-x64 --target melvorin-faults melvorin-driver ui_tests
	@tools/faults.sh

# Documents by LibreOffice and AbiWord, MELVORIN_FOREIGN by each, opened, saved and transposed, and
# MELVORIN_CORPUS damaged ones opened, all by the real program.
rtf-corpus: export MELVORIN_CORPUS ?= 10000
rtf-corpus: win-x64
	@cmake --build --preset win-x64 --target ui_tests
	@tools/setup.sh corpus
	@tools/rtf-corpus.sh
	@tools/endure.sh 'Endurance.DamagedDocuments*'

# Random commands for MELVORIN_SOAK_SECONDS, the history walked and the resources counted.
soak: export MELVORIN_SOAK_SECONDS ?= 3600
soak: win-x64
	@cmake --build --preset win-x64 --target ui_tests
	@tools/endure.sh 'Endurance.Hours*'

# MELVORIN_SONGS invented songs as PDF, read back by other programs and measured against the fonts.
paper: native
	@tests/paper/run.py build/native

# The installer and the zip of the 32-bit program, in build/package.
package: win-x86
	@tools/setup.sh package
	@tools/make-package.py build/win-x86 build/package

# A second ground: both builds under Wine 10 in a Debian of its own, the 32-bit one as its package
# installs it, which is removed again. Needs root, and a few minutes the first time.
test-x86: package native win-x64
	@tools/setup.sh test-x86
	@cmake --build --preset win-x86 --target ui_tests melvorin-driver melvorin-faults planted
	@cmake --build --preset win-x64 --target ui_tests melvorin-driver melvorin-faults planted
	@tools/test-x86.sh

setup:
	@tools/setup.sh

$(BUILD_TARGETS): setup
	@mkdir -p build
	@[ -e build/$@/build.ninja ] || cmake --preset $@ >build/$@.configure.log 2>&1 || \
	    { cat build/$@.configure.log; exit 1; }
	@cmake --build --preset $@

lint: setup native-asan win-x64
	@tools/lint.py

clean:
	rm -rf build

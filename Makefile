# The one front door: `make` lists what there is.
#
# Variables: LEXICON=DIR another MeCab-format lexicon; PREFIX=DIR where to
# install; TEXT=FILE what the benchmark reads; SECONDS=N how long each fuzz
# target runs; CXX=clang++ another compiler, with a build folder of its own;
# SETUP=: installs no packages.

LEXICON ?= /usr/share/mecab/dic/ipadic
PREFIX ?= /usr/local
JOBS ?= $(shell nproc)
SETUP ?= scripts/setup
SECONDS ?= 60
TEXT ?=
GOLD ?=
LEXICONS ?=
NAME ?= $(if $(filter /usr/share/mecab/dic/ipadic,$(LEXICON)),ipadic,$(subst -,_,$(notdir $(LEXICON))))

# A compiler named on the command line builds beside the default one.
ifeq ($(origin CXX),command line)
BUILD ?= build-$(notdir $(CXX))
CONFIGURE_FLAGS := -DCMAKE_CXX_COMPILER=$(CXX)
ifeq ($(findstring clang,$(CXX)),clang)
CONFIGURE_FLAGS += -DCMAKE_C_COMPILER=clang
endif
else
BUILD ?= build
endif
# Warnings are errors where nobody watches the output.
CONFIGURE_FLAGS += -DTAVO_WERROR=$(if $(CI),ON,OFF)

# A blank and a line of its own before each stage, so that long output reads.
say = @printf '\n== %s\n' "$(1)"
# Test results are printed in full when a test fails.
CTEST := ctest --output-on-failure --no-tests=error -j $(JOBS)
# The loader's list of libraries; a user who may not write it has LD_LIBRARY_PATH.
LDCONFIG := [ -n "$$DESTDIR" ] || [ "$$(id -u)" != 0 ] || ! command -v ldconfig >/dev/null || ldconfig

.DEFAULT_GOAL := help
.PHONY: help demo test fuzz build lexicon wheel bench accuracy lint tidy format install \
        sanitize test-asan test-tsan uninstall clean

help:
	@echo 'make demo       install what is needed, build, make the lexicon, analyse some sentences'
	@echo 'make test       all tests'
	@echo 'make sanitize   all tests under the address and undefined sanitizers, those with threads under the thread sanitizer'
	@echo 'make fuzz       each fuzz target for SECONDS=$(SECONDS) seconds'
	@echo 'make build      program $(BUILD)/bin/tavo, library $(BUILD)/lib/libtavo.so; CXX=clang++ for another compiler'
	@echo 'make lexicon    the default lexicon in $(BUILD)/share/tavo; LEXICON=DIR for another source'
	@echo 'make wheel      Python wheels of analyser and lexicon in dist; LEXICON=DIR for another source, NAME=NAME its name'
	@echo 'make install    program, library, headers and lexicon below PREFIX=$(PREFIX)'
	@echo 'make uninstall  takes that away again; what was added beside it stays'
	@echo 'make clean      removes the build folders, the lexicon with them'
	@echo 'make bench      speed of the pieces and of the program; TEXT=FILE for a text of your own'
	@echo 'make accuracy   word F1 against another analyser and against gold; TEXT=FILE GOLD=FILE.conllu LEXICONS=...'
	@echo 'make lint       format, layers, shellcheck, cppcheck, clang-tidy'
	@echo 'make tidy       the same with clang-tidy file by file, following paths, which takes many minutes'
	@echo 'make format     reformat all C++ files'
	@echo
	@echo 'Debian packages that are missing (file packages) are named, then installed; SETUP=: installs none.'

demo: lexicon
	@BUILD=$(BUILD) scripts/demo

build:
	@$(SETUP)
	$(call say,compile program and library in $(BUILD))
	@cmake --preset release -B $(BUILD) $(CONFIGURE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) --target tavo_program tavo

lexicon: build
	$(call say,lexicon from $(LEXICON) in $(BUILD)/share/tavo)
	@scripts/make-lexicon '$(BUILD)' '$(LEXICON)'

wheel: lexicon
	@$(SETUP) python
	$(call say,wheels in dist)
	@python3 -B bindings/python/tavo_build.py dist '$(BUILD)' '$(BUILD)/share/tavo' '$(NAME)'

test: lexicon
	@$(SETUP) test
	$(call say,tests (release))
	@cmake --preset release -B $(BUILD) $(CONFIGURE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)
	@$(CTEST) --test-dir $(BUILD)

# One after the other, also under -j.
sanitize:
	@$(MAKE) --no-print-directory test-asan
	@$(MAKE) --no-print-directory test-tsan
	$(call say,all tests passed under the sanitizers)

test-asan: lexicon
	@$(SETUP) test
	$(call say,tests under the address and undefined behaviour sanitizers)
	@cmake --preset asan-ubsan $(CONFIGURE_FLAGS) >/dev/null
	@cmake --build --preset asan-ubsan -j $(JOBS)
	@$(CTEST) --test-dir build-asan

test-tsan: lexicon
	@$(SETUP) test
	$(call say,tests with threads under the thread sanitizer)
	@cmake --preset tsan $(CONFIGURE_FLAGS) >/dev/null
	@cmake --build --preset tsan -j $(JOBS) --target tavo_thread_tests tavo_program tavo_make_conn_table
	@$(CTEST) --test-dir build-tsan -L threads

fuzz:
	@$(SETUP) fuzz
	$(call say,fuzz targets ($(SECONDS) seconds each))
	@cmake --preset fuzz >/dev/null
	@cmake --build --preset fuzz -j $(JOBS) --target tavo_fuzz_targets
	@scripts/fuzz build-fuzz $(SECONDS)

install: lexicon
	$(call say,install below $(PREFIX))
	@cmake -B $(BUILD) -DCMAKE_INSTALL_PREFIX="$$(realpath -m -- '$(PREFIX)')" >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) --target tavo_program tavo
	@cmake --install $(BUILD)
	@$(LDCONFIG)

uninstall:
	@scripts/uninstall "$$DESTDIR$$(realpath -m -- '$(PREFIX)')"
	@$(LDCONFIG)

clean:
	rm -rf '$(BUILD)' build-asan build-tsan build-fuzz

bench: lexicon
	@$(SETUP) bench
	$(call say,speed of the pieces)
	@cmake --preset release -B $(BUILD) $(CONFIGURE_FLAGS) -DTAVO_BUILD_BENCH=ON >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) --target tavo_benches
	@$(BUILD)/bin/tavo_bench
	$(call say,the whole program)
	@scripts/bench-whole.py --tavo $(BUILD)/bin/tavo --library $(BUILD)/bin/tavo_bench_library $(TEXT)

accuracy: lexicon
	@$(SETUP) accuracy
	@BUILD=$(BUILD) GOLD='$(GOLD)' LEXICONS='$(LEXICONS)' scripts/accuracy $(TEXT)

lint:
	@$(SETUP) lint
	@cmake --preset release -B $(BUILD) $(CONFIGURE_FLAGS) >/dev/null
	@BUILD=$(BUILD) JOBS=$(JOBS) scripts/lint

tidy:
	@$(SETUP) lint
	@cmake --preset release -B $(BUILD) $(CONFIGURE_FLAGS) >/dev/null
	@BUILD=$(BUILD) JOBS=$(JOBS) scripts/lint --clang

format:
	@$(SETUP) lint
	@git ls-files '*.cpp' '*.hpp' '*.h' '*.c' | xargs clang-format -i

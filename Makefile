# What a person types; CMake does the work.
PLAN ?= examples/HouseBuilding.xml
OUT ?= out
export CTEST_PARALLEL_LEVEL ?= $(shell nproc)

# The programs alone: build/MSPDIImport and build/mspdi.
.PHONY: build
build: configure
	cmake --build --preset release --target MSPDIImport mspdi

# Imports PLAN into a new document in the folder OUT.
.PHONY: import
import: build
	@build/mspdi import -o "$(OUT)" "$(PLAN)"

# Makes a page of PLAN in the folder OUT, and opens it where there is a desktop.
.PHONY: view
view: build
	@mkdir -p "$(OUT)"
	@name=$$(basename "$(PLAN)") && has_desktop=$${DISPLAY:-$$WAYLAND_DISPLAY} && \
	    build/mspdi view $${has_desktop:+--open} -o "$(OUT)/$${name%.*}.html" "$(PLAN)"

# Installs below PREFIX (and DESTDIR, if given): programs, template, man pages, completions, examples, documents.
PREFIX ?= /usr/local
.PHONY: install
install: configure
	cmake --build --preset release --target MSPDIImport mspdi documents
	cmake --install build --prefix "$(PREFIX)"

# A Debian package in build/package, the same whenever it is made of one state of the sources: its times are those of the
# last commit, or SOURCE_DATE_EPOCH.
.PHONY: package
package: export SOURCE_DATE_EPOCH ?= $(shell git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)
package: deps
	@tools/install-dependencies dpkg-dev file gzip
	@cmake --preset release $(without_tests) >/dev/null
	cmake --build --preset release --target MSPDIImport mspdi documents
	cpack --config build/CPackConfig.cmake

# Builds everything and runs all tests; then tells which were skipped, and why.
.PHONY: test
test:
	@tools/install-dependencies --tests
	@cmake --preset release -DKZMSP_BUILD_TESTS=ON >/dev/null # what is wrong goes to standard error
	cmake --build --preset release
	ctest --preset release && tools/why-skipped build

# Fuzzes each target for FUZZ_SECONDS; what breaks one is kept in Tests/Fuzz/Inputs. With a FUZZ_SEED every run tries the
# same inputs, see tools/fuzz.
FUZZ_SECONDS ?= 60
FUZZ_SEED ?=
.PHONY: fuzz
fuzz: deps
	@tools/install-dependencies clang libclang-rt-14-dev dpkg-dev xz-utils
	@tools/build-fuzz-libraries build-fuzz/libraries
	cmake --preset fuzz
	cmake --build --preset fuzz
	build-fuzz/CountedStepsTests
	FUZZ_SEED="$(FUZZ_SEED)" tools/fuzz "$(FUZZ_SECONDS)"

# Measures single operations, then imports of generated plans against the floor of only parsing and writing the same, and
# the comparison of two documents against reading both, then pages of large plans in Chromium.
# BENCH=--micro measures the operations alone; any other BENCH measures imports alone and is passed on, such as
# BENCH='--only actual' or BENCH=--huge for the plan of 1,000,000 tasks.
.PHONY: bench
bench: deps
	@tools/install-dependencies libbenchmark-dev
	cmake --preset release -DKZMSP_BUILD_BENCH=ON
	cmake --build --preset release --target MSPDIImport mspdi import-bench diff-bench floor linked-only micro-bench
	$(if $(filter-out --micro,$(BENCH)),,build/micro-bench)
	$(if $(filter --micro,$(BENCH)),,build/import-bench build/MSPDIImport share/kadenza2/Empty.kdzx build/floor \
	    build/linked-only "$${TMPDIR:-/tmp}" $(BENCH))
	$(if $(BENCH),,build/diff-bench "$${TMPDIR:-/tmp}")
	$(if $(BENCH),,tools/install-dependencies chromium chromium-driver python3-selenium)
	$(if $(BENCH),,Tests/Bench/page-bench build/mspdi "$${TMPDIR:-/tmp}")

# The programs need no libraries of the tests; a build folder that has tests keeps them.
without_tests = $(if $(wildcard build/CMakeCache.txt),,-DKZMSP_BUILD_TESTS=OFF)

.PHONY: configure
configure: deps
	@cmake --preset release $(without_tests) >/dev/null # what is wrong goes to standard error

# Installs the Debian packages that the programs need, where they are missing.
.PHONY: deps
deps:
	@tools/install-dependencies

# What a person types; CMake does the work.
PLAN ?= examples/HouseBuilding.xml
OUT ?= out
export CTEST_PARALLEL_LEVEL ?= $(shell nproc)

# The program alone: build/MSPDIImport.
.PHONY: build
build: configure
	cmake --build --preset release --target MSPDIImport

# Imports PLAN into a new bundle in the folder OUT.
.PHONY: import
import: build
	@tools/import-plan "$(PLAN)" "$(OUT)"

# Builds everything and runs all tests.
.PHONY: test
test: configure
	cmake --build --preset release
	ctest --preset release

# Fuzzes each target for FUZZ_SECONDS; what breaks one is kept in Tests/Fuzz/Inputs.
FUZZ_SECONDS ?= 60
.PHONY: fuzz
fuzz: deps
	cmake --preset fuzz
	cmake --build --preset fuzz
	tools/fuzz "$(FUZZ_SECONDS)"

.PHONY: configure
configure: deps
	cmake --preset release

# Installs missing Debian packages.
.PHONY: deps
deps:
	@tools/install-dependencies

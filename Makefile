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

.PHONY: configure
configure: deps
	cmake --preset release

# Installs missing Debian packages.
.PHONY: deps
deps:
	@tools/install-dependencies

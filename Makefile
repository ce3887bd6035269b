# Two entry points for a fresh Debian machine:
#   make run   installs what is missing, builds, and runs the demonstration job
#   make test  installs what is missing, builds, and runs every test
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
WERROR ?= OFF
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run bench clean

all: build

deps:
	@scripts/install-deps

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DRM_WERROR=$(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

run: build
	@scripts/demo $(BUILD_DIR)/bin

bench: build
	@$(BUILD_DIR)/bin/bench_read_profiles
	@for b in bench_contour bench_track_map; do if [ -x $(BUILD_DIR)/bin/$$b ]; then $(BUILD_DIR)/bin/$$b; fi; done

clean:
	@rm -rf $(BUILD_DIR)

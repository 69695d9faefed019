# Set-up, build, test and demo for qxbase. Every target installs what is missing first, so a
# fresh Debian machine needs nothing but `make run` or `make test` as root.

BUILD     ?= build
BUILDTYPE ?= RelWithDebInfo
WERROR    ?= OFF
SANITIZE  ?= OFF
JOBS      ?= $(shell nproc)
CTEST_ARGS ?=
CMAKE_ARGS ?=

DEB_PACKAGES := cmake ninja-build g++ make pkg-config ccache \
	qt6-base-dev qt6-serialport-dev libgl-dev \
	libkissfft-dev libgtest-dev libgmock-dev libbenchmark-dev

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: all deps configure build test run bench clean

all: build

deps:
	@missing=""; \
	for p in $(DEB_PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  $(SUDO) apt-get update && \
	  DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y --no-install-recommends $$missing; \
	fi

configure: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILDTYPE) \
	  -DQXBASE_WERROR=$(WERROR) -DQXBASE_SANITIZE=$(SANITIZE) $(CMAKE_ARGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) $(CTEST_ARGS)

# With a display: the demo worksheet in its window. Without one: the console tour, the binding
# walk-through, the data path and snapshots of the worksheet in design mode (its first page, and
# the acquisition page with its charts).
run: build
	@if [ -z "$$DISPLAY" ] && [ -z "$$WAYLAND_DISPLAY" ]; then \
	  export QT_QPA_PLATFORM=offscreen; \
	  $(BUILD)/apps/qxsheet/qxsheet tour && \
	  $(BUILD)/apps/qxsheet/qxsheet bindings && \
	  $(BUILD)/apps/qxsheet/qxsheet datapath && \
	  $(BUILD)/apps/qxsheet/qxsheet --snapshot $(BUILD)/qxsheet-snapshot.png && \
	  $(BUILD)/apps/qxsheet/qxsheet --snapshot $(BUILD)/qxsheet-charts.png --page Acquisition; \
	else \
	  $(BUILD)/apps/qxsheet/qxsheet; \
	fi

bench: deps
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQXBASE_BUILD_TESTS=OFF
	cmake --build build-bench -j $(JOBS)
	@for b in build-bench/bench/qxbase_bench_*; do [ -x "$$b" ] && "$$b" || exit 1; done

clean:
	rm -rf build build-asan build-tsan build-bench

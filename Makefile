# Two commands for a fresh Debian 12 machine (as root, or as a user with sudo):
#   make demo   install what is missing, build, send a link to three local FTP servers
#   make test   install what is missing, build, run every test, then again under the sanitizers

BUILD   ?= build
SUDO    := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
PACKAGES := cmake ninja-build g++ ccache pkg-config \
            qt6-base-dev qt6-multimedia-dev libgl-dev libcurl4-openssl-dev libgtest-dev \
            python3 python3-pyftpdlib vsftpd curl lftp xvfb xauth

.PHONY: deps build test demo clean

deps:
	@missing=$$(for p in $(PACKAGES); do \
	    dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q '^install ok installed' || echo $$p; \
	  done); \
	if [ -n "$$missing" ]; then \
	  echo "Installing: $$missing"; \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get update -qq && \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $$missing; \
	fi

WERROR  ?= ON
CTEST   := ctest --output-on-failure --timeout 300 -j2
# The sanitizer trees build the engine alone, at -O1 without debug information (the reports still
# name every function) and with precompiled headers: the main build has already compiled every
# file without them, so a missing include cannot hide.
SANITIZED := -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O1 \
             -DZELTO_BUILD_UI=OFF -DZELTO_WERROR=ON -DZELTO_PCH=ON

build: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELTO_WERROR=$(WERROR)
	cmake --build $(BUILD)

# Every test of the full build; then every engine test under AddressSanitizer and UBSan; then the
# tests of the threaded subsystems under ThreadSanitizer (tests/tsan.supp says what it leaves out,
# and why). Warnings are errors in every build here (WERROR=OFF to build anyway), so that make demo
# and make test share one build. A test whose FTP server cannot run fails (ZELTO_REQUIRE_FIXTURES=0
# lets it skip).
test: export ZELTO_REQUIRE_FIXTURES ?= 1
test: build
	$(CTEST) --test-dir $(BUILD)
	cmake -S . -B $(BUILD)-asan $(SANITIZED) -DZELTO_SANITIZE="address;undefined"
	cmake --build $(BUILD)-asan --target zelto_tests
	$(CTEST) --test-dir $(BUILD)-asan
	cmake -S . -B $(BUILD)-tsan $(SANITIZED) -DZELTO_SANITIZE=thread
	cmake --build $(BUILD)-tsan --target zelto_tests_distribution zelto_tests_queue zelto_tests_ftp
	$(CTEST) --test-dir $(BUILD)-tsan -L '^(distribution|queue|ftp)$$'

# Three FTP servers on loopback, a link to them, "zelto -l demo", and where the files landed. The
# demo keeps its settings and data in $(BUILD)/demo-home, never in the user's own.
demo: build
	tools/demo.sh $(BUILD)

clean:
	rm -rf $(BUILD) $(BUILD)-asan $(BUILD)-tsan

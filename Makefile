# Two commands for a fresh Debian 12 machine (as root, or as a user with sudo):
#   make demo   install what is missing, build, send a link to three local FTP servers
#   make test   install what is missing, build, run every test

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

build: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD)

test: build
	ctest --test-dir $(BUILD) --output-on-failure --timeout 300 -j2

# Three FTP servers on loopback, a link to them, "zelto -l demo", and where the files landed. The
# demo keeps its settings and data in $(BUILD)/demo-home, never in the user's own.
demo: build
	tools/demo.sh $(BUILD)

clean:
	rm -rf $(BUILD)

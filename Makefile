# Two commands do all the set-up on a fresh Debian machine: `make demo` and `make test`.
BUILD_DIR ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo

.PHONY: all deps configure build test demo bench install package plugin-only asan tsan format \
	format-check qt55-check translations-check clean

all: build

deps:
	@./scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS) > /dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

demo: build
	@./scripts/demo.sh $(BUILD_DIR)

bench: build
	@./scripts/bench.sh $(BUILD_DIR)

# The tools and the plug-in under PREFIX (DESTDIR is honoured): see README.md, "Install".
PREFIX ?= /usr/local
install: build
	@cmake --install $(BUILD_DIR) --prefix $(PREFIX)

# The .deb for a commissioning laptop and the pendant's .tar.gz, in $(BUILD_DIR)/packages;
# lintian checks the .deb.
package: build
	@./scripts/install-deps.sh package
	@cd $(BUILD_DIR) && rm -rf packages && cpack
	@lintian --fail-on error $(BUILD_DIR)/packages/*.deb

# The plug-in alone, configured as with the pendant's kit (docs/pendant-build.md), in a clean
# folder, then what the library needs from the system that loads it.
PLUGIN_BUILD_DIR ?= build-plugin
plugin-only: deps
	@rm -rf $(PLUGIN_BUILD_DIR)
	@cmake -S . -B $(PLUGIN_BUILD_DIR) -DCMAKE_BUILD_TYPE=Release -DGRIPPER_PLUGIN_ONLY=ON \
		$(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache) > /dev/null
	@cmake --build $(PLUGIN_BUILD_DIR) -j $(JOBS)
	@./scripts/plugin-report.sh $(PLUGIN_BUILD_DIR)/plugins/libZanther2F.so

# Every test, the pages' and the plug-in's included, under AddressSanitizer +
# UndefinedBehaviorSanitizer. Leaks that Qt and fontconfig keep until exit are suppressed by
# cmake/lsan.supp, which names third-party frames only.
ASAN_BUILD_DIR ?= build-asan
# Also for the build: it runs a Qt program that paints the pages' images.
ASAN_ENV = QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=0 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/cmake/lsan.supp:print_suppressions=0
asan: deps
	@cmake -S . -B $(ASAN_BUILD_DIR) -DCMAKE_BUILD_TYPE=Debug -DGRIPPER_WITH_QT=ON \
		-DGRIPPER_SANITIZE=address,undefined > /dev/null
	@$(ASAN_ENV) cmake --build $(ASAN_BUILD_DIR) -j $(JOBS)
	@cd $(ASAN_BUILD_DIR) && $(ASAN_ENV) UBSAN_OPTIONS=print_stacktrace=1 \
		ctest --output-on-failure -j $(JOBS)

# The core and the simulator under ThreadSanitizer.
tsan: deps
	@cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=Debug -DGRIPPER_WITH_QT=OFF \
		-DGRIPPER_SANITIZE=thread > /dev/null
	@cmake --build build-tsan -j $(JOBS)
	@cd build-tsan && TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
		ctest --output-on-failure -j $(JOBS)

format:
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

format-check:
	@git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

# What the pendant loads keeps to the Qt 5.5 API (the check reads the build's ui_*.h files).
qt55-check: build
	@../shared/qt55/check.sh -p $(BUILD_DIR) platform gripper_main/userinterface_logic src

# Every operator text of the sources has a finished translation in the three catalogues.
translations-check: deps
	@./scripts/check-translations.sh

clean:
	@rm -rf $(BUILD_DIR) build-asan build-tsan $(PLUGIN_BUILD_DIR)

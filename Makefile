# make demo   build, then run the example scripts in xpsim and print the plugin's log and output
# make test   build with AddressSanitizer and UndefinedBehaviorSanitizer, then run every test
# make bench  build optimised benchmarks and run them
# make plugin build an optimised Corvelle.xpl for a real simulator (build-release/plugins/...)
# make dist   build optimised and pack the release: dist/Corvelle-<version>-lin_x64.tar.gz
# make api-docs  write the generated API reference into docs/api (a test compares the two)
# make soak   reload scripts that leave everything behind 100 times and print resident memory
# make fuzz   build the sanitizer build's xpsim and plugin, then call every binding with hostile
#             arguments (tests/fuzz): make fuzz SEED=7 CALLS=1000, make fuzz SEED=7 ONLY=123 (one call)

BUILD       ?= build
JOBS        ?= $(shell nproc)
DEMO_ROOT   ?= demo-root
DEMO_SECONDS ?= 5
SEED        ?= 1
CALLS       ?= 300000
export ASAN_OPTIONS ?= detect_leaks=0:abort_on_error=0:halt_on_error=1
export UBSAN_OPTIONS ?= print_stacktrace=1:halt_on_error=1

.PHONY: setup build test demo bench plugin dist api-docs soak fuzz clean

setup:
	@tools/install-deps.sh

build: setup
	cmake -S . -B $(BUILD) -DCORVELLE_SANITIZE=ON -DCORVELLE_TESTS=ON
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 300

demo: build
	rm -rf $(DEMO_ROOT)
	mkdir -p $(DEMO_ROOT)/Resources/plugins/PythonScripts
	cp examples/PythonScripts/*.py $(DEMO_ROOT)/Resources/plugins/PythonScripts/
	cp tests/data/DataRefs.txt $(DEMO_ROOT)/Resources/plugins/
	cp -R tests/data/xpsim-root/. $(DEMO_ROOT)/
	@if [ -f examples/demo-events.txt ]; then ev="--events examples/demo-events.txt"; else ev=""; fi; \
	$(BUILD)/sim/xpsim run --root $(DEMO_ROOT) --plugin $(BUILD)/plugins/Corvelle/lin_x64/Corvelle.xpl \
	    --seconds $(DEMO_SECONDS) $$ev > $(DEMO_ROOT)/xpsim-stdout.txt
	@echo "================ CorvelleLog.txt ================"
	@cat $(DEMO_ROOT)/Resources/plugins/PythonScripts/CorvelleLog.txt
	@echo "================ CorvelleOutput.txt ================"
	@cat $(DEMO_ROOT)/Resources/plugins/PythonScripts/CorvelleOutput.txt

bench: setup
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DCORVELLE_SANITIZE=OFF -DCORVELLE_TESTS=OFF -DCORVELLE_BENCH=ON
	cmake --build build-bench -j $(JOBS)
	build-bench/bench/corvelle_bench

plugin: setup
	cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DCORVELLE_SANITIZE=OFF -DCORVELLE_TESTS=OFF
	cmake --build build-release -j $(JOBS) --target Corvelle

dist: setup
	cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DCORVELLE_SANITIZE=OFF -DCORVELLE_TESTS=OFF
	cmake --build build-release -j $(JOBS) --target Corvelle script_api
	python3 tools/package.py --build build-release --out dist

api-docs: setup
	cmake -S . -B $(BUILD) -DCORVELLE_SANITIZE=ON -DCORVELLE_TESTS=ON
	cmake --build $(BUILD) -j $(JOBS) --target script_api
	rm -f docs/api/*.md
	cp $(BUILD)/api/docs/*.md docs/api/

soak: setup
	cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DCORVELLE_SANITIZE=OFF -DCORVELLE_TESTS=OFF
	cmake --build build-release -j $(JOBS) --target Corvelle xpsim
	python3 tests/soak/soak.py --xpsim build-release/sim/xpsim \
	    --plugin build-release/plugins/Corvelle/lin_x64/Corvelle.xpl --datarefs tests/data/DataRefs.txt \
	    --reloads 100 --max-growth-mb 10

fuzz: setup
	cmake -S . -B $(BUILD) -DCORVELLE_SANITIZE=ON -DCORVELLE_TESTS=ON
	cmake --build $(BUILD) -j $(JOBS) --target xpsim Corvelle
	python3 tests/fuzz/run_fuzz.py --xpsim $(BUILD)/sim/xpsim --plugin $(BUILD)/plugins/Corvelle/lin_x64/Corvelle.xpl \
	    --seed $(SEED) --calls $(CALLS) $(if $(ONLY),--only $(ONLY)) $(if $(SDK),--sdk $(SDK))

clean:
	rm -rf $(BUILD) build-bench build-release $(DEMO_ROOT) dist

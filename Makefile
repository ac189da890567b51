# make run    installs what is missing, builds, makes the sample company, checks the sample entries
# make test   installs what is missing, builds, runs all tests, also under the sanitizers
# make lint   layout and static analysis
# make bench  installs what is missing, builds and runs the benchmarks
# make clean  removes what was built

PACKAGES := g++ cmake ninja-build libsqlite3-dev nlohmann-json3-dev libcli11-dev libgtest-dev
LINT_PACKAGES := clang-format clang-tidy
BENCH_PACKAGES := libbenchmark-dev
SOURCES = $(shell git ls-files '*.h' '*.cpp')
COMPANY := build/sample.db

.PHONY: run test lint bench build deps clean

run: build
	rm -f $(COMPANY)
	build/release/kalcogcheck init $(COMPANY) --sample
	@build/release/kalcogcheck check --company $(COMPANY) host/samples/*.json; \
	  status=$$?; echo; echo "kalcogcheck ended with status $$status (1: at least one entry was not free)"; \
	  test $$status -le 1

build: deps
	cmake --preset release -DBUILD_TESTING=OFF
	cmake --build --preset release

# The release tests, then the same under the address and undefined-behaviour sanitizers, then what
# runs in several threads under the thread sanitizer.
test: deps
	cmake --preset release -DBUILD_TESTING=ON
	cmake --build --preset release
	cmake --preset debug
	cmake --build --preset debug
	cmake --preset thread
	cmake --build --preset thread --target kal_tests
	ctest --preset thread -R Threads
	ctest --preset debug
	ctest --preset release

lint: deps-lint
	clang-format --dry-run --Werror $(SOURCES)
	cmake --preset release -DBUILD_TESTING=ON
	printf '%s\n' $(filter %.cpp,$(SOURCES)) | xargs -P 2 -n 4 clang-tidy --quiet -p build/release

bench: deps-bench
	cmake --preset release -DKAL_BENCH=ON
	cmake --build --preset release
	build/release/bench/kal_bench

deps:
	@tools/install-missing $(PACKAGES)

deps-lint:
	@tools/install-missing $(PACKAGES) $(LINT_PACKAGES)

deps-bench:
	@tools/install-missing $(PACKAGES) $(BENCH_PACKAGES)

clean:
	rm -rf build

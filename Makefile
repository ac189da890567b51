# make run    installs what is missing, builds, makes the sample company, checks the sample entries
# make test   installs what is missing, builds, runs all tests, also under the sanitizers
# make package   makes what is handed out, in build/package: the Debian packages (package-debian), and
#             a zip of the Windows server in both widths (package-windows)
# make test-package   tries the Debian packages: installed in a fresh Debian, used, built upon, removed
# make test-windows   the same for the Windows automation server, under Wine
# make layout the layout of the sources
# make lint   layout and static analysis
# make bench  installs what is missing, builds and runs the benchmarks
# make report    makes a plausible year of 2,000 entries, and the page of its check: build/report.html
# make pictures  takes the README's pictures of that page
# make docs   writes the lists of docs/, and what every operation asks, as the code states them
# make torture   minutes: calls to the system and allocations fail one by one, companies are damaged
# make fuzz   ten minutes of fuzzing a target
# make million   a million checks in one process
# make clean  removes what was built

PACKAGES := g++ cmake ninja-build libsqlite3-dev libpq-dev libsimdjson-dev nlohmann-json3-dev \
  libcli11-dev libkainjow-mustache-dev nettle-dev libgtest-dev
TEST_PACKAGES := postgresql chromium chromium-driver python3 man-db zsh
PACKAGE_PACKAGES := dpkg-dev file
LINT_PACKAGES := clang-format clang-tidy libbenchmark-dev
FUZZ_PACKAGES := clang libclang-rt-14-dev
BENCH_PACKAGES := libbenchmark-dev ledger postgresql
SOURCES = $(shell git ls-files '*.h' '*.cpp')
# The Windows sources need Windows headers; their compiler warns about them.
ANALYSED = $(filter-out server/% tests/windows/% fuzz/%,$(filter %.cpp,$(SOURCES)))
COMPANY := build/sample.db

YEAR := build/year.db build/year.jsonl

.PHONY: run report pictures package package-debian package-windows test test-package test-windows layout lint docs \
  bench torture fuzz million build deps deps-test deps-package deps-lint deps-bench deps-fuzz clean

run: build
	rm -f $(COMPANY)
	build/release/kalcogcheck init $(COMPANY) --sample
	@build/release/kalcogcheck check --company $(COMPANY) host/samples/*.json; \
	  status=$$?; echo; echo "kalcogcheck ended with status $$status (1: at least one entry was not free)"; \
	  test $$status -le 1

report: build
	@tools/install-missing python3
	rm -f $(YEAR)
	build/release/kalcogcheck init build/year.db --sample
	tools/plausible-year 2024 2000 build/year.db host/samples >build/year.jsonl
	build/release/kalcogcheck check --company build/year.db --only-problems \
	  --report build/report.html build/year.jsonl | tail -n 1
	@echo "the page: build/report.html"

pictures: report deps-test
	timeout 120 tools/pictures build/report.html docs/pictures

build: deps
	cmake --preset release -DBUILD_TESTING=OFF
	cmake --build --preset release

package: package-debian package-windows

# What the packages hold is dated by the last commit, so that the same sources make the same bytes.
package-debian: export SOURCE_DATE_EPOCH ?= $(shell git log -1 --format=%ct 2>/dev/null || date +%s)
package-debian: deps-package
	cmake --preset package -DBUILD_TESTING=OFF
	cmake --build --preset release
	cpack --config build/release/CPackConfig.cmake -B build/package

# The release tests, then the same under the address and undefined-behaviour sanitizers, then what
# runs in several threads under the thread sanitizer. The packages at last.
test: deps-test
	cmake --preset release -DBUILD_TESTING=ON
	cmake --build --preset release
	cmake --preset debug
	cmake --build --preset debug
	cmake --preset thread
	cmake --build --preset thread --target kal_thread_tests
	build/thread/tests/kal_thread_tests
	ctest --preset debug
	ctest --preset release
	tools/test-package

test-package:
	tools/test-package

test-windows:
	tools/test-windows

package-windows:
	tools/package-windows

layout: deps-lint
	clang-format --dry-run --Werror $(SOURCES)

lint: layout
	cmake --preset release -DBUILD_TESTING=ON -DKAL_BENCH=ON
	printf '%s\n' $(ANALYSED) | xargs -P 2 -n 1 clang-tidy --quiet -p build/release

docs: deps
	cmake --preset release -DBUILD_TESTING=ON
	cmake --build --preset release
	KAL_WRITE_DOCS=1 build/release/tests/kal_tests --gtest_filter='Docs.*:Faults.Conversations*'

torture: build deps-test
	tools/torture build/release/kalcogcheck

fuzz: deps-fuzz
	tools/fuzz

million: deps-bench
	cmake --preset release -DKAL_BENCH=ON
	cmake --build --preset release --target kal_million
	build/release/bench/kal_million host/samples/*.json

bench: deps-bench
	cmake --preset release -DKAL_BENCH=ON
	cmake --build --preset release
	build/release/bench/kal_bench
	build/release/bench/kal_server_bench host/samples/*.json

deps:
	@tools/install-missing $(PACKAGES)

deps-test:
	@tools/install-missing $(PACKAGES) $(TEST_PACKAGES)

deps-package:
	@tools/install-missing $(PACKAGES) $(PACKAGE_PACKAGES)

deps-lint:
	@tools/install-missing $(PACKAGES) $(LINT_PACKAGES)

deps-bench:
	@tools/install-missing $(PACKAGES) $(BENCH_PACKAGES)

deps-fuzz:
	@tools/install-missing $(PACKAGES) $(FUZZ_PACKAGES)

clean:
	rm -rf build

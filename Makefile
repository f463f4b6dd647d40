# The front door. Each target installs what it needs first (scripts/setup.sh, idempotent).
.PHONY: test demo fuzz bench sdk setup clean

# Builds for i686 and x86_64 and runs every test under Wine; ends with "N passed, N failed".
test:
	bash scripts/run-tests.sh

# Builds (i686) and runs the demo on the bundled sample skin. LANGUAGE=2052 picks a language.
demo:
	bash scripts/run-demo.sh $(LANGUAGE)

# Builds (i686) and fuzzes the skin loader and the windows for SECONDS (default 60): prints
# cases run, crashes, hangs and distinct outcomes; SEED=N replays a run's seed.
SECONDS ?= 60
fuzz:
	MIRL_FUZZ_SEED=$(SEED) bash scripts/run-fuzz.sh $(SECONDS)

# Builds (i686) and runs the benchmarks under Wine in three rounds: one table of each figure's
# median ratio of ours to a baseline that does the same work with the platform alone, its spread over
# the rounds, and the target.
bench:
	bash scripts/run-bench.sh

# Builds both architectures and writes build/MIRL-sdk-VERSION.zip, what applications build against.
sdk:
	bash scripts/make-sdk.sh

setup:
	bash scripts/setup.sh

clean:
	rm -rf build

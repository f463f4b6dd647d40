# The front door. Each target installs what it needs first (scripts/setup.sh, idempotent).
.PHONY: test demo setup clean

# Builds for i686 and x86_64 and runs every test under Wine; ends with "N passed, N failed".
test:
	bash scripts/run-tests.sh

# Builds (i686) and runs the demo on the bundled sample skin. LANGUAGE=2052 picks a language.
demo:
	bash scripts/run-demo.sh $(LANGUAGE)

setup:
	bash scripts/setup.sh

clean:
	rm -rf build

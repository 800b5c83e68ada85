# The two commands that matter: `make run` plays the game, `make test` runs every test.
# Both install what they need (Debian packages) on first use.
.PHONY: test run bench assets deps clean

test:
	@bash scripts/test.sh

run:
	@bash scripts/run.sh

assets:
	@bash scripts/assets.sh

bench:
	@bash scripts/bench.sh

deps:
	@bash scripts/install-deps.sh

clean:
	rm -rf build

# The two commands that matter: `make run` plays the game, `make test` runs every test.
# Both install what they need (Debian packages) on first use.
.PHONY: test run bench assets deps clean dist install uninstall

test:
	@bash scripts/test.sh

run:
	@bash scripts/run.sh

assets:
	@bash scripts/assets.sh

# The release: build/dist/Tavirel-Puzzle-Setup-<version>.exe and Tavirel-Puzzle-<version>-win32.zip.
dist:
	@bash scripts/dist.sh

# For this user only, no root: the game under ~/.local/share/tavirel-puzzle with a menu entry.
install:
	@bash scripts/install.sh

# Keeps the saved games, records and settings in ~/.local/share/tavirel-puzzle.
uninstall:
	@bash scripts/uninstall.sh

bench:
	@bash scripts/bench.sh

deps:
	@bash scripts/install-deps.sh

clean:
	rm -rf build

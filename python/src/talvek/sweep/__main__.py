"""``python -m talvek.sweep``, installed as ``talvek-sweep``."""

from __future__ import annotations

import argparse
import sys
from collections.abc import Sequence

from talvek.errors import TalvekError
from talvek.sweep.sweep import Sweep


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(prog="talvek-sweep", description="Many runs of one plan.")
    commands = parser.add_subparsers(dest="command", required=True)

    def add(name: str, text: str) -> argparse.ArgumentParser:
        command = commands.add_parser(name, help=text, description=text)
        if name != "plan":
            command.add_argument("folder", metavar="DIR")
        return command

    plan = add("plan", "write every run's values out")
    plan.add_argument("file", metavar="FILE.toml")
    plan.add_argument("--out", dest="folder", metavar="DIR", required=True)
    run = add("run", "run what is missing on this machine's cores")
    run.add_argument("--workers", type=int, metavar="N")
    submit = add("submit", "hand what is missing to Slurm; what stands after -- goes to sbatch")
    submit.add_argument("--dry-run", action="store_true", help="show the script and submit nothing")
    submit.add_argument("--seconds", type=float, metavar="S", help="how long a run takes, instead of trying")
    work = add("work", "run one chunk; what a task of the cluster calls")
    work.add_argument("--chunk", type=int, required=True, metavar="K")
    add("status", "say how far the sweep is")
    add("collect", "write results.csv")
    clean = add("clean", "remove what killed workers have left, and logs")
    clean.add_argument("--force", action="store_true", help="even if runs are missing")
    return parser


def _print_progress(done: int, planned: int) -> None:
    if sys.stderr.isatty():
        print(f"\r{done} of {planned} runs", end="\n" if done == planned else "", file=sys.stderr, flush=True)


def _perform(options: argparse.Namespace, passed_on: Sequence[str]) -> None:
    if options.command == "plan":
        print(f"{len(Sweep.plan(options.file, options.folder))} runs planned in {options.folder}")
        return
    sweep = Sweep(options.folder)
    if options.command == "run":
        sweep.run(workers=options.workers, progress=_print_progress)
    elif options.command == "submit":
        print(sweep.submit(passed_on, seconds=options.seconds, dry_run=options.dry_run))
    elif options.command == "work":
        print(f"{sweep.work(options.chunk)} runs finished")
    elif options.command == "status":
        print("\n".join(f"{name:9} {value:g}" for name, value in sweep.status().items()))
    elif options.command == "collect":
        print(sweep.collect())
    elif options.command == "clean":
        sweep.clean(force=options.force)


def main(arguments: Sequence[str] | None = None) -> int:
    """Run the command line and return the exit status."""
    given = list(sys.argv[1:] if arguments is None else arguments)
    place = given.index("--") if "--" in given else len(given)
    try:
        _perform(_parser().parse_args(given[:place]), given[place + 1 :])
    except TalvekError as error:
        print(f"talvek-sweep: {error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        print("talvek-sweep: cancelled; what is finished is kept", file=sys.stderr)
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())

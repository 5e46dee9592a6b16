"""The copy of the work tree that is broken, built and tested, one mutant after another."""

import filecmp
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SLOW_PROGRAM = 5  # seconds from which on a program of tests is run in parts
PARTS = 6  # side by side, as conversations sleep most of their time
MEMORY = 8 << 30  # bytes for a process


class CannotWork(Exception):
    """The tree without a mutant is no ground to stand on."""


def tracked_files():
    git = ["git", "-c", f"safe.directory={ROOT}", "-C", str(ROOT), "ls-files", "-z"]
    names = subprocess.run(
        git + ["--cached", "--others", "--exclude-standard"], capture_output=True, check=True
    ).stdout
    return [name for name in names.decode().split("\0") if name and (ROOT / name).exists()]


def copy_changed(source, target, names):
    """Makes the files of `target` those of `source`, with their times."""
    for name in names:
        old, new = target / name, source / name
        told = new.stat()
        if old.exists():
            present = old.stat()
            if (present.st_mtime_ns, present.st_size) == (told.st_mtime_ns, told.st_size):
                continue
        old.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(new, old, follow_symlinks=False)


def files_below(folder):
    return [str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()]


def limit_process():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CPU, (600, 600))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Program:
    """A program of tests, with the programs that it drives."""

    def __init__(self, name, files):
        self.name = name
        self.files = files  # its own and theirs, relative to the build
        self.seconds = 0.0  # that it takes without a mutant
        self.parts = 1


class Tree:
    def __init__(self, folder, jobs):
        self.jobs = jobs
        self.source = folder / "tree"
        self.build = folder / "build"
        self.kept = folder / "kept"  # the build without a mutant
        self.scratch = folder / "scratch"
        self.programs = []
        self.objects = {}  # by source file, relative to the build

    def ninja(self, targets):
        command = ["ninja", "-C", str(self.build), f"-j{self.jobs}", *targets]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def copy_sources(self):
        names = tracked_files()
        for name in set(files_below(self.source)) - set(names):
            (self.source / name).unlink()
        copy_changed(ROOT, self.source, names)

    def prepare(self):
        flags = "-O1 -DNDEBUG -D_GLIBCXX_ASSERTIONS -DKESTRAN_CHECK_INDICES"
        subprocess.run(
            ["cmake", "-S", str(self.source), "-B", str(self.build), "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=Release", f"-DCMAKE_CXX_FLAGS_RELEASE={flags}",
             "-DKESTRAN_TESTS=ON"],
            stdout=subprocess.DEVNULL, check=True,
        )  # fmt: skip
        built = self.ninja([])
        if built.returncode != 0:
            raise CannotWork(built.stdout[-3000:])
        self.find_objects()
        self.find_programs()
        for program in self.programs:
            start = time.monotonic()
            failed = self.run(program, 600)
            if failed:
                failed = self.run(program, 600)
            if failed:
                raise CannotWork(f"{program.name} fails without any mutant: {failed}")
            program.seconds = time.monotonic() - start
            program.parts = PARTS if program.seconds > SLOW_PROGRAM else 1
        self.programs.sort(key=lambda program: program.seconds)
        self.keep()

    def find_objects(self):
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            name = str(pathlib.Path(entry["file"]).resolve().relative_to(self.source.parent))
            name = name.removeprefix("tree/")
            made = re.search(r" -o (\S+)", entry["command"])[1]
            self.objects.setdefault(name, []).append(made)

    def find_programs(self):
        told = subprocess.run(
            ["ctest", "--test-dir", str(self.build), "--show-only=json-v1"],
            capture_output=True, text=True, check=True,
        ).stdout  # fmt: skip
        tests = {pathlib.Path(test["command"][0]).name for test in json.loads(told)["tests"]}
        made = {p.name for p in self.build.iterdir() if p.is_file() and os.access(p, os.X_OK)}
        for name in sorted(tests):
            inputs = subprocess.run(
                ["ninja", "-C", str(self.build), "-t", "inputs", name],
                capture_output=True, text=True, check=True,
            ).stdout  # fmt: skip
            self.programs.append(Program(name, [name, *sorted(made & set(inputs.split("\n")))]))

    def keep(self):
        if self.kept.exists():
            shutil.rmtree(self.kept)
        shutil.copytree(self.build, self.kept)

    def restore(self):
        for name in set(files_below(self.build)) - set(files_below(self.kept)):
            (self.build / name).unlink()
        copy_changed(self.kept, self.build, files_below(self.kept))

    def is_as_kept(self, names):
        pairs = ((self.build / name, self.kept / name) for name in names)
        return all(filecmp.cmp(new, old, shallow=False) for new, old in pairs)

    # ---- Tests ----

    def run(self, program, limit, tests="*"):
        """Runs tests of a program. What failed, as a text; empty if all passed."""
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        environment = dict(os.environ, KESTRAN_TIME_FACTOR="4", TMPDIR=str(self.scratch))
        parts = program.parts if tests == "*" else 1
        command = [
            str(self.build / program.name), "--gtest_brief=1", "--gtest_fail_fast",
            f"--gtest_filter={tests}",
        ]  # fmt: skip
        running = []
        for part in range(parts):
            if parts > 1:
                environment |= {"GTEST_TOTAL_SHARDS": str(parts), "GTEST_SHARD_INDEX": str(part)}
            output = tempfile.TemporaryFile(dir=self.scratch.parent)
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                env=environment, cwd=self.scratch, start_new_session=True,
                preexec_fn=limit_process,
            )  # fmt: skip
            running.append((process, output))
        try:
            return self.wait_for_all(running, time.monotonic() + limit)
        finally:
            for process, output in running:
                self.end_group(process)
                output.close()
            self.end_orphans()

    @staticmethod
    def wait_for_all(running, end):
        """What the first of them to fail says, empty if none does."""
        waiting = list(running)
        while waiting:
            for process, output in list(waiting):
                status = process.poll()
                if status is None:
                    continue
                waiting.remove((process, output))
                if status != 0:
                    output.seek(0)
                    failed = re.findall(rb"\[  FAILED  \] ([\w./]+)", output.read())
                    return failed[0].decode() if failed else f"status {status}"
            if time.monotonic() > end:
                return "time"
            time.sleep(0.01)
        return ""

    @staticmethod
    def end_group(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()

    @staticmethod
    def end_orphans():
        """Ends what a program of tests has started and left behind, which is ours now."""
        for list_of_children in pathlib.Path("/proc/self/task").glob("*/children"):
            for child in map(int, list_of_children.read_text().split()):
                os.kill(child, signal.SIGKILL)
                os.waitpid(child, 0)

    def test(self, program):
        """Like run(), but a test has to fail twice, as a busy machine fails some, too."""
        limit = 10 + 5 * program.seconds
        failed = self.run(program, limit)
        for _ in range(3):
            if "." not in failed:
                return failed
            again = self.run(program, limit, failed)
            if again:
                return again
            failed = self.run(program, limit)  # the others have not been run
        return ""

    def judge(self, mutant):
        """What becomes of a mutant, and which test has seen it."""
        path = self.source / mutant.file
        text, told = path.read_text(), path.stat()
        path.write_text(text[: mutant.start] + mutant.text + text[mutant.end :])
        try:
            return self.build_and_test(mutant)
        finally:
            path.write_text(text)
            os.utime(path, ns=(told.st_atime_ns, told.st_mtime_ns))
            self.restore()

    def build_and_test(self, mutant):
        objects = self.objects.get(mutant.file, [])
        if objects:
            if self.ninja(objects).returncode != 0:
                return "uncompiled", ""
            if self.is_as_kept(objects):
                return "same", ""
        is_same = True
        for program in self.programs:
            if self.ninja(program.files).returncode != 0:
                return "uncompiled", ""
            if self.is_as_kept(program.files):
                continue
            is_same = False
            failed = self.test(program)
            if failed:
                return "killed", f"{program.name}: {failed}"
        return "same" if is_same else "survived", ""

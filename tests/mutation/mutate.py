"""Runs the tests against mutants of the library and of the companion headers: see scripts/mutate."""
import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import resource
import shlex
import shutil
import subprocess
import sys
import threading
from collections import Counter, namedtuple

import page
from mutants import Source

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DIRECTORIES = "abi load mix picture rows stretch subpicture include/lumalane".split()
EQUIVALENT = "tests/mutation/equivalent.txt"

# What is built: the preset, and the targets of the row kernels that are mutated there.
BUILDS = {"linux-x64": ("portable", "sse2", "avx2", "avx512"), "linux-x86": ("mmx",)}

ROW_PROGRAMS = (
    "row_kernels_test rgb_kernel_test ayuy2_kernel_test blend_test rgb16_packing_test edge_search_test "
    "adjustment_test"
).split()
DISPATCH = ["dispatch_test", "cpu_x86_test"]
# That does not run the widest target.
OLDER_PROCESSOR = ("qemu-x86_64", "-cpu", "Nehalem")
EDGE_CASES = [f"edge_cases{of}_test" for of in ("", "_mix", "_stretch", "_subpicture", "_yuy2")]
COMPANIONS = ["footprint_test", "checked_test", "picture_test"]
OTHERS = ["order_test", "state_test", "in_order_test", "store_policy_test"]
PROGRAMS = ["differential_test", *ROW_PROGRAMS, *DISPATCH, *EDGE_CASES, *OTHERS, *COMPANIONS]

Task = namedtuple("Task", "file mutant build target before after")
# With which objects alone, if not with all; for how many seconds of the processor at most, ten times as
# long as without a mutant or so; and on which emulator.
Stage = namedtuple("Stage", "program arguments objects seconds emulator", defaults=(None, 40, ()))
ON_OLDER_PROCESSOR = Stage("dispatch_test", ["--expect", "sse2"], emulator=OLDER_PROCESSOR)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def run(command, **how):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **how).stdout


def digest_of(paths):
    digest = hashlib.sha256()
    for path in sorted(paths):
        digest.update(path.encode() + b"\0" + read(os.path.join(ROOT, path)).encode() + b"\0")
    return digest.hexdigest()[:16]


def sources():
    found = run(["git", "-C", ROOT, "ls-files", *DIRECTORIES]).splitlines()
    return [f for f in found if f.endswith((".cpp", ".h"))]


# ---- What is built without a mutant --------------------------------------------------------------


class Build:
    """A tree that CMake has made: what is compiled and linked by which command, and from what."""

    def __init__(self, directory, targets):
        self.directory = directory
        self.command_of, self.files_of, self.link_of, self.symbols_of = {}, {}, {}, {}
        for entry in json.loads(read(f"{directory}/compile_commands.json")):
            words = shlex.split(entry["command"])
            self.command_of[words[words.index("-o") + 1]] = words
        for line in run(["ninja", "-C", directory, "--quiet", "-t", "deps"]).splitlines():
            if line.startswith("    "):
                self.files_of[current].append(os.path.relpath(os.path.join(directory, line.strip()), ROOT))
            elif ": #deps" in line:
                current = line.split(": #deps")[0]
                self.files_of[current] = []
        for program in PROGRAMS:
            command = run(["ninja", "-C", directory, "-t", "commands", "-s", f"tests/{program}"])
            self.link_of[program] = shlex.split(command.removeprefix(": && ").removesuffix(" && :\n"))
        listed = run([f"{directory}/tests/edge_cases_test", "--gtest_list_tests"])
        runs = set(re.findall(r"/(\w+)  # GetParam", listed))
        self.targets = [t for t in targets if t in runs]
        self.lines, self.active = {}, {}
        self.lock = threading.Lock()

    @staticmethod
    def is_of_library(built):
        return built.startswith("CMakeFiles/lumalane_") and not re.search("_(shipped|shared)", built)

    def affected(self, file, target):
        """The objects that are compiled from the file; of row kernels those of the target."""
        rows = [f"CMakeFiles/lumalane_rows_{t}.dir/" for t in ([target] if target else self.targets)]
        return [
            built
            for built, files in self.files_of.items()
            if file in files
            and built in self.command_of
            and (not built.startswith("CMakeFiles/lumalane_rows_") or built.startswith(tuple(rows)))
        ]

    def objects_of(self, program):
        """Those that the program may be linked from."""
        words = self.link_of[program]
        own = [w for w in words if w.endswith(".o")]
        libraries = [re.sub(r"lib(\w+)\.a$", r"CMakeFiles/\1.dir/", w) for w in words if w.endswith(".a")]
        return [
            built
            for built in self.command_of
            if built in own
            or any(built.startswith(library) for library in libraries)
            or (self.is_of_library(built) and "liblumalane_all_targets.a" in words)
        ]

    def compile(self, built, root, output, level="-O1"):
        """Whether the object could be made of the sources under `root`."""
        words = []
        for word in self.command_of[built]:
            flag, path = re.fullmatch(r"(-I|-isystem)?(.*)", word).groups()
            inside = path == ROOT or path.startswith(ROOT + "/")
            if inside and not path.startswith(self.directory):
                word = (flag or "") + root + path[len(ROOT) :]
            words.append(word)
        optimized = {"-O2"} if self.is_of_library(built) else {"-O3"}
        words = [level if w in optimized and "-O0" not in words else w for w in words]
        words[words.index("-o") + 1] = output
        words += ["-w", "-frandom-seed=1", f"-ffile-prefix-map={root}=."]
        return subprocess.run(words, cwd=self.directory, stderr=subprocess.DEVNULL).returncode == 0

    def original(self, built, level="-O1"):
        """The object of the sources as they are, compiled as those of mutants are."""
        path = f"{self.directory}/mutation/{level}/{built.replace('/', '_')}"
        with self.lock:
            if not os.path.exists(path):
                os.makedirs(os.path.dirname(path), exist_ok=True)
                if not self.compile(built, ROOT, path, level):
                    sys.exit(f"mutate: {built} does not compile")
        return path

    def link(self, program, objects, output):
        """The program with other objects: by name, the path of what takes its place."""
        words = [word for word in self.link_of[program] if word not in objects]
        words[words.index("-o") + 1] = output
        # Before all others, from which the same names are then not taken.
        words[1:1] = objects.values()
        command = words + (["-fuse-ld=lld"] if shutil.which("ld.lld") else [])
        linked = subprocess.run(command, cwd=self.directory, stderr=subprocess.PIPE, text=True)
        if linked.returncode != 0:
            sys.exit(f"mutate: {program} cannot be linked: {linked.stderr}")

    def names_in(self, objects, names):
        """Those of the names of functions that the objects define."""
        found = set()
        for built in objects:
            if built not in self.symbols_of:
                text = run(["nm", "--defined-only", "-C", f"{self.directory}/{built}"])
                self.symbols_of[built] = set(re.findall(r" T (?:lumalane::)?(?:\w+::)?(\w+)\(", text))
            found |= self.symbols_of[built] & names
        return found

    def active_lines(self, file, target):
        """The lines of the file of which the compiler sees anything."""
        if (file, target) not in self.active:
            objects = self.affected(file, target)
            self.active[file, target] = set().union(*(self._lines_of(b).get(file, set()) for b in objects))
        return self.active[file, target]

    def _lines_of(self, built):
        path = f"{self.directory}/mutation/lines/{built.replace('/', '_')}.json"
        if built in self.lines:
            return self.lines[built]
        with self.lock:
            if not os.path.exists(path):
                os.makedirs(os.path.dirname(path), exist_ok=True)
                words = [w for w in self.command_of[built] if w != "-c"]
                del words[words.index("-o") : words.index("-o") + 2]
                if "-include" in words:  # a precompiled header
                    del words[words.index("-include") : words.index("-include") + 2]
                seen, file, line = {}, None, 0
                for text in run([*words, "-E"], cwd=self.directory).splitlines():
                    marker = re.match(r'# (\d+) "([^"]*)"', text)
                    if marker:
                        line = int(marker.group(1))
                        file = os.path.relpath(os.path.join(self.directory, marker.group(2)), ROOT)
                    else:
                        if text.strip() and not file.startswith(".."):
                            seen.setdefault(file, []).append(line)
                        line += 1
                with open(path, "w") as output:
                    json.dump(seen, output)
        self.lines[built] = {file: set(lines) for file, lines in json.loads(read(path)).items()}
        return self.lines[built]


# ---- Programs that are run -----------------------------------------------------------------------


def execute(command, cpu_seconds):
    """passed, failed or too long."""

    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    process = subprocess.Popen(
        command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=limit
    )
    waits_for_ever = threading.Timer(40 * cpu_seconds + 60, process.kill)
    waits_for_ever.start()
    process.wait()
    waits_for_ever.cancel()
    # SIGKILL and SIGXCPU end what takes more than its time.
    return {0: "passed", -9: "too long", -24: "too long"}.get(process.returncode, "failed")


def exports():
    text = read(f"{ROOT}/abi/exports.inc")
    return set(re.findall(r"^LUMALANE_EXPORT\(\w+, (\w+)\)", text, re.MULTILINE))


def row_kernels():
    text = read(f"{ROOT}/rows/rows.inc")
    return set(re.findall(r"^LUMALANE_ROW_KERNEL\(\w+, (\w+),", text, re.MULTILINE))


EXPORTS, ROW_KERNELS = exports(), row_kernels()


def tests_of(build, built):
    """A filter for the tests in the source of an object, if it has any."""
    source = f"{ROOT}/tests/" + re.sub(r".*?\.dir/(.*)\.o$", r"\1", built)
    suites = set(re.findall(r"^TEST(?:_P|_F)?\((\w+),", read(source), re.MULTILINE))
    return ["--gtest_filter=" + ":".join(f"*{suite}.*" for suite in sorted(suites))] if suites else []


def stages(build, task, affected, thorough):
    """What is run against the mutant, the fast and the likely first."""
    library = [built for built in affected if build.is_of_library(built)]

    def differential(cases, names=None):
        names = sorted(names or EXPORTS)
        if not thorough:
            cases = min(cases, 4000 // len(names))
        arguments = ["--gtest_filter=" + ":".join(f"*/{name}" for name in names), "--cases", str(cases)]
        return Stage("differential_test", arguments, seconds=3 + cases * len(names) // 200)

    def size(built):
        return os.path.getsize(f"{build.directory}/{built}")

    slow = [Stage(p, []) for p in ("in_order_test", "picture_test")] if thorough else []
    if task.target:
        plan = []
        of_target = [f"--gtest_filter=*/{task.target}"]
        for built in sorted((b for b in library if "lumalane_rows_" in b), key=size):
            # Kernels know nothing of those in other files: what one file makes of a header is enough.
            kernels = sorted(build.names_in([built], ROW_KERNELS))
            names = ["--gtest_filter=" + ":".join(f"*/{name}" for name in kernels)]
            if kernels:
                plan.append(Stage("row_kernels_test", names, [built], 4 + 2 * len(kernels)))
        plan += [Stage(p, of_target) for p in ROW_PROGRAMS[1:]]
        plan += [differential(40)]
        plan += [Stage(p, of_target) for p in EDGE_CASES] + [Stage("state_test", [])]
        return plan + slow + [differential(2000)]
    names = build.names_in(library, EXPORTS)
    callers = [Stage(p, []) for p in EDGE_CASES + ["state_test", "store_policy_test"]]
    callers += [differential(2000, names)]
    if not task.file.startswith("include/"):
        first = [*DISPATCH, "order_test"] if task.file.startswith("abi/") else []
        first = ["order_test"] if task.file.startswith("picture/") else first
        first = [Stage(program, []) for program in first]
        if task.file.startswith("abi/") and shutil.which(OLDER_PROCESSOR[0]):
            first.append(ON_OLDER_PROCESSOR)
        return [*first, differential(100, names), *callers, Stage("checked_test", []), *slow]
    plan = []
    for program in COMPANIONS:
        # Each file of a test first without the others, which share nothing that these headers make.
        objects = sorted((b for b in affected if f"/{program}.dir/" in b), key=size)
        parts = [Stage(program, tests_of(build, built), [built]) for built in objects]
        plan += [part for part in parts if part.arguments or program != "picture_test"]
    plan += [Stage(program, []) for program in COMPANIONS + OTHERS[:1]]
    return plan + ([differential(30), *callers, *slow] if library else [])


def stages_without_a_mutant(build):
    """What runs every test of all stages, each once."""
    cases = 4000 // len(EXPORTS)
    plan = [
        Stage("row_kernels_test", [], seconds=4 + 2 * len(ROW_KERNELS) * len(build.targets)),
        Stage("differential_test", ["--cases", str(cases)], seconds=3 + cases * len(EXPORTS) // 200),
    ]
    plan += [Stage(p, [f"--gtest_filter=*/{target}"]) for p in ROW_PROGRAMS[1:] for target in build.targets]
    plan += [Stage(p, []) for p in PROGRAMS if p not in ("differential_test", *ROW_PROGRAMS)]
    if "sse2" in build.targets and shutil.which(OLDER_PROCESSOR[0]):
        plan.append(ON_OLDER_PROCESSOR)
    return plan


def refuse_failing_tests(builds, jobs):
    """A test that fails by itself would kill every mutant."""
    todo = [(build, stage) for build in builds for stage in stages_without_a_mutant(build)]

    def passes(entry):
        build, stage = entry
        program = f"{build.directory}/tests/{stage.program}"
        return execute([*stage.emulator, program, *stage.arguments], stage.seconds)

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for (build, stage), said in zip(todo, pool.map(passes, todo)):
            if said != "passed":
                command = " ".join([*stage.emulator, stage.program, *stage.arguments])
                sys.exit(f"mutate: {command} {said} without a mutant ({build.directory})")


# ---- One mutant ------------------------------------------------------------------------------------


class Worker:
    """A copy of the sources, in which mutants take their turn."""

    def __init__(self, directory, builds, thorough):
        self.directory, self.builds, self.thorough = directory, builds, thorough
        self.root, self.made = f"{directory}/tree", f"{directory}/made"
        shutil.rmtree(directory, ignore_errors=True)
        os.makedirs(self.made)
        listed = ["git", "-C", ROOT, "ls-files", "--cached", "--others", "--exclude-standard"]
        for path in run(listed).splitlines():
            if path.endswith((".cpp", ".h", ".hpp", ".inc")) and os.path.exists(f"{ROOT}/{path}"):
                os.makedirs(os.path.dirname(f"{self.root}/{path}"), exist_ok=True)
                shutil.copy2(f"{ROOT}/{path}", f"{self.root}/{path}")

    def judge(self, task, original, mutated):
        """What becomes of the mutant, and by what."""
        path = f"{self.root}/{task.file}"
        with open(path, "w", encoding="utf-8") as file:
            file.write(mutated)
        try:
            return self._judge(task, self.builds[task.build])
        finally:
            with open(path, "w", encoding="utf-8") as file:
                file.write(original)
            shutil.rmtree(self.made)
            os.makedirs(self.made)

    def _judge(self, task, build):
        affected = build.affected(task.file, task.target)
        compiled, same = {}, {}

        def made(built, level="-O1"):
            return f"{self.made}/{level}{built.replace('/', '_')}"

        def compiles(built, level="-O1"):
            if (built, level) not in compiled:
                compiled[built, level] = build.compile(built, self.root, made(built, level), level)
            return compiled[built, level]

        def differs(built, level="-O1"):
            if (built, level) not in same:
                compiles(built, level)
                with open(made(built, level), "rb") as a, open(build.original(built, level), "rb") as b:
                    same[built, level] = a.read() == b.read()
            return not same[built, level]

        done = set()
        for stage in stages(build, task, affected, self.thorough):
            linked = set(build.objects_of(stage.program))
            objects = [b for b in (stage.objects or affected) if b in linked]
            for built in objects:
                if not compiles(built):
                    # What an assertion in a test says is a test's word.
                    if not build.is_of_library(built) and self._header_compiles(task, build, affected):
                        return "killed", f"{stage.program} (compiled)"
                    return "does not compile", ""
            # (Most mutants die at once, and need no comparison.)
            differing = {b: made(b) for b in objects if not done or differs(b)}
            key = (stage.program, tuple(stage.arguments), stage.emulator, tuple(sorted(differing)))
            if not differing or key in done:
                continue
            done.add(key)
            program = f"{self.made}/{stage.program}"
            build.link(stage.program, differing, program)
            said = execute([*stage.emulator, program, "--gtest_fail_fast", *stage.arguments], stage.seconds)
            if said != "passed":
                return ("killed" if said == "failed" else "killed by the time limit"), stage.program
        own = [b for b, level in compiled if level == "-O1" and differs(b)]
        if not any(differs(b, "-O2") if build.is_of_library(b) else True for b in own):
            return "same code", ""
        return "survived", ""

    def _header_compiles(self, task, build, affected):
        """Whether a companion header compiles by itself."""
        if not task.file.startswith("include/"):
            return False
        words = [w for w in build.command_of[next(b for b in affected if not build.is_of_library(b))]]
        command = [words[0], f"-I{self.root}/include", "-std=c++20", "-w", "-fsyntax-only", "-x", "c++"]
        command += ["-m32"] if "-m32" in words else []
        return (
            subprocess.run([*command, f"{self.root}/{task.file}"], stderr=subprocess.DEVNULL).returncode == 0
        )



# ---- Those that are known not to make a difference -------------------------------------------------


def equivalents():
    """Of (file, line, mutated line, target or None) the reason. See the list."""
    reasons = {}
    file = target = before = after = None
    for number, line in enumerate(read(f"{ROOT}/{EQUIVALENT}").splitlines(), 1):
        if line.startswith("#") or not line.strip():
            continue
        if line.startswith("file "):
            file, target = [*line[5:].split(), None][:2]
        elif line.startswith("- "):
            before, after = line[2:].strip(), None
        elif line.startswith("+ "):
            after = line[2:].strip()
            reasons[file, before, after, target] = ""
        elif line.startswith("  ") and after is not None:
            key = file, before, after, target
            reasons[key] = f"{reasons[key]} {line.strip()}".strip()
        else:
            sys.exit(f"{EQUIVALENT}:{number}: cannot read {line}")
    for (file, before, after, _), reason in reasons.items():
        if not reason:
            sys.exit(f"{EQUIVALENT}: no reason for {file}: {after}")
        known = {Source(read(f"{ROOT}/{file}"))} if os.path.exists(f"{ROOT}/{file}") else set()
        if not any((before, after) == s.told(m) for s in known for m in s.mutants()):
            sys.exit(f"{EQUIVALENT}: {file} has no such mutant: {after}")
    return reasons


# ---- Earlier results -------------------------------------------------------------------------------


def believed(lines, digests, ran):
    """Of (mutant) the status and what told it: of the same tests, while its file stays the same. That no
    test tells a mutant holds for the same code and thoroughness alone."""
    known = {}
    for line in lines:
        entry = json.loads(line)
        same = entry["ran"] == ran or (entry["ran"][1] == ran[1] and entry["status"] != "survived")
        if same and entry["file"] == digests.get(entry["mutant"][0]):
            known[tuple(entry["mutant"])] = entry["status"], entry["by"]
    return known


# ---- The sample ------------------------------------------------------------------------------------


def population(seed):
    """Every mutant of every source, shuffled, each with a number of its own."""
    found, times = [], Counter()
    for file in sources():
        source = Source(read(f"{ROOT}/{file}"))
        for mutant in source.mutants():
            # (Whatever becomes of other lines, it keeps its place among the mutants.)
            told = (file, *source.told(mutant))
            times[told] += 1
            number = hashlib.sha256(repr((seed, told, times[told])).encode()).hexdigest()
            found.append((number, file, source, mutant))
    return sorted(found, key=lambda entry: entry[0])


def draw(builds, seed):
    """Those of what is compiled, in the same order."""
    places = [(name, target) for name, build in builds.items() for target in build.targets]
    for number, file, source, mutant in population(seed):
        name, target = next(iter(builds)), None
        if file.startswith("rows/") and file != "rows/rows.h":
            name, target = places[int(number, 16) % len(places)]
        if source.line_of(mutant.first) in builds[name].active_lines(file, target):
            yield Task(file, mutant, name, target, *source.told(mutant)), source


def usage():
    parser = argparse.ArgumentParser(prog="scripts/mutate", description="See scripts/mutate.")
    parser.add_argument("count", type=int)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--build", default="build/mutation")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--only", default="", help="files whose names begin so")
    parser.add_argument("--targets", default=",".join(t for targets in BUILDS.values() for t in targets))
    parser.add_argument("--page", help="the page of the manual that gets the table")
    parser.add_argument("--fresh", action="store_true", help="believe no earlier result")
    parser.add_argument("--thorough", action="store_true", help="run survivors through more and slower tests")
    parser.add_argument("--doubt", action="store_true", help="run those that are listed as equivalent, too")
    return parser


def main():
    parser = usage()
    options = parser.parse_args()

    directory = os.path.abspath(options.build)
    chosen = options.targets.split(",")
    builds = {
        preset: Build(f"{directory}/{preset}", [t for t in targets if t in chosen])
        for preset, targets in BUILDS.items()
        if preset == "linux-x64" or set(targets) & set(chosen)
    }
    reasons = equivalents()
    others = run(["git", "-C", ROOT, "ls-files", "simd", "include", "cmake/lumalane.cmake", "*.inc"]).splitlines()
    code = digest_of(set(sources() + others))
    tests = digest_of(
        f
        for f in run(["git", "-C", ROOT, "ls-files", "tests"]).splitlines()
        if f.endswith((".cpp", ".h", "mutate.py")) and os.path.exists(f"{ROOT}/{f}")
    )
    # What objects without a mutant are is known until the sources change.
    for build in builds.values():
        stamp = f"{build.directory}/mutation/code"
        if not os.path.exists(stamp) or read(stamp) != code:
            shutil.rmtree(os.path.dirname(stamp), ignore_errors=True)
            os.makedirs(os.path.dirname(stamp))
            with open(stamp, "w") as file:
                file.write(code)

    refuse_failing_tests(builds.values(), options.jobs)
    journal = f"{directory}/results.jsonl"
    digests = {file: digest_of([file]) for file in sources()}
    ran = [code, tests, options.thorough]
    known = {}
    if os.path.exists(journal) and not options.fresh:
        known = believed(read(journal).splitlines(), digests, ran)

    workers = [Worker(f"{directory}/worker-{i}", builds, options.thorough) for i in range(options.jobs)]
    free, lock = list(workers), threading.Lock()
    results, counted = {}, 0
    output = open(journal, "a", encoding="utf-8")

    def settle(number, task, source):
        listed = page.reason_of(reasons, task) is not None
        if listed and not options.doubt:
            return number, task, "equivalent", ""
        key = (task.file, str(task.mutant.first), task.after, task.build, task.target or "")
        if key not in known:
            with lock:
                worker = free.pop()
            try:
                known[key] = worker.judge(task, source.text, source.applied(task.mutant))
                # Of companion headers, processors of another baseline see other lines.
                for name in [n for n in builds if n != task.build and task.file.startswith("include/")]:
                    if known[key][0] == "survived":
                        other = worker.judge(task._replace(build=name), source.text, source.applied(task.mutant))
                        known[key] = other if other[0].startswith("killed") else known[key]
            finally:
                with lock:
                    free.append(worker)
            with lock:
                entry = dict(mutant=key, status=known[key][0], by=known[key][1], file=digests[task.file], ran=ran)
                output.write(json.dumps(entry) + "\n")
                output.flush()
        status, by = known[key]
        if listed and status == "survived":
            status = "equivalent"
        elif listed and status.startswith("killed"):
            print(f"{EQUIVALENT}: {by} tells them apart: {task.file}: {task.after}", flush=True)
        return number, task, status, by

    # The first mutants of the draw that compile to other code than that without them.
    drawn = (t for t in draw(builds, options.seed) if t[0].file.startswith(options.only))
    numbered = enumerate(drawn)
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        running, sample, next_of_sample, finished = set(), [], 0, False
        while not finished:
            while len(running) < 2 * options.jobs:
                try:
                    number, (task, source) = next(numbered)
                except StopIteration:
                    break
                running.add(pool.submit(settle, number, task, source))
            if not running:
                break
            done, running = concurrent.futures.wait(running, return_when=concurrent.futures.FIRST_COMPLETED)
            for future in done:
                number, task, status, by = future.result()
                results[number] = (task, status, by)
            while next_of_sample in results and not finished:
                task, status, by = results[next_of_sample]
                next_of_sample += 1
                sample.append((task, status, by))
                counted += status not in ("does not compile", "same code")
                if status == "survived":
                    place = f"file {task.file}"
                    print(f"{place} {task.target or ''}\n- {task.before}\n+ {task.after}", flush=True)
                if counted % 25 == 0 and status not in ("does not compile", "same code"):
                    print(f"{counted} of {options.count}", file=sys.stderr, flush=True)
                finished = counted >= options.count
    command = f"scripts/mutate {options.count} --seed {options.seed}"
    command += f" --only {options.only}" if options.only else ""
    command += f" --targets {options.targets}" if options.targets != parser.get_default("targets") else ""
    tally = page.Tally(sample, command, reasons)
    print(tally.text())
    if counted < options.count:
        sys.exit(f"mutate: there are no more than {counted} of them")
    if options.page:
        page.replace(options.page, tally.text())
    survivors = Counter(status for task, status, by in sample)["survived"]
    sys.exit(1 if survivors else 0)


if __name__ == "__main__":
    main()

"""The results of a sample as tables for the manual."""
from collections import Counter

BEGIN, END = "<!-- made by scripts/mutate: begin -->", "<!-- made by scripts/mutate: end -->"
LEFT_OUT = ("does not compile", "same code")


def row(*cells):
    return "| " + " | ".join(str(cell) for cell in cells) + " |\n"


def reason_of(reasons, task):
    """Why a mutant is listed as equivalent, for its target or for every one; or None."""
    told = task.file, task.before, task.after
    return reasons.get((*told, task.target), reasons.get((*told, None)))


class Tally:
    def __init__(self, sample, command, reasons):
        self.left_out = Counter(status for task, status, by in sample if status in LEFT_OUT)
        self.sample = [entry for entry in sample if entry[1] not in LEFT_OUT]
        self.command, self.reasons = command, reasons

    def _table(self, heading, group_of):
        groups = {}
        for entry in self.sample:
            for group in (group_of(entry), "all of them"):
                groups.setdefault(group, Counter()).update([entry[1]])
        everything = groups.pop("all of them", Counter())
        text = row(heading, "mutants", "killed by a test", "by the time limit", "equivalent", "survived")
        text += row("---", *["---:"] * 5)
        for group, found in [*sorted(groups.items()), ("**all of them**", everything)]:
            columns = ("killed", "killed by the time limit", "equivalent", "survived")
            text += row(group, sum(found.values()), *(found[c] for c in columns))
        return text + "\n"

    def text(self):
        found = Counter(status for task, status, by in self.sample)
        killed = found["killed"] + found["killed by the time limit"]
        different = len(self.sample) - found["equivalent"]
        text = f"`{self.command}`: {killed} of {len(self.sample)} mutants killed, {found['equivalent']} "
        text += f"equivalent, {found['survived']} survived: {100 * killed / max(1, different):.1f} % of those "
        text += f"that a test can kill. Beside them, {self.left_out['same code']} were drawn that "
        text += f"compile to the same code, and {self.left_out['does not compile']} that do not compile.\n\n"
        text += self._table("part", lambda entry: f"`{entry[0].file.rsplit('/', 1)[0]}/`")
        text += self._table("row kernels of", lambda entry: entry[0].target or "(no row kernel)")
        text += self._table("mutation", lambda entry: entry[0].mutant.kind)
        text += row("killed first by", "mutants") + row("---", "---:")
        by = Counter(by for task, status, by in self.sample if status.startswith("killed"))
        for program, count in sorted(by.items(), key=lambda item: (-item[1], item[0])):
            text += row(f"`{program}`", count)
        return text + self._reasons()

    def _reasons(self):
        listed = set()
        for task, status, by in self.sample:
            if status == "equivalent":
                told = f"`{task.file}`: `{task.before}` as `{task.after}`", reason_of(self.reasons, task)
                listed.add(tuple(part.replace("|", "\\|") for part in told))
        if not listed:
            return ""
        text = "\n" + row("equivalent", "because") + row("---", "---")
        return text + "".join(row(*told) for told in sorted(listed))


def replace(path, text):
    with open(path, encoding="utf-8") as file:
        old = file.read()
    before, rest = old.split(BEGIN)
    after = rest.split(END)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{BEGIN}\n\n{text}\n{END}{after}")

#!/usr/bin/python3
"""Reads a header as Doxygen should. Inside the namespace, the comments written
with // become documentation: a comment over a run of declarations documents
each of them (the run becomes a member group), and a comment after code on
its line documents that line. The file's opening comment describes the file."""
import re
import sys

DECLARATION = re.compile(r"^\s*(?!//|#|public:|private:|protected:|Q_SIGNALS:|namespace\b|\}|$)")
lines = open(sys.argv[1], encoding="utf-8").read().split("\n")
out = []
inside = False
group_open = False
i = 0
opening = True
while i < len(lines):
    line = lines[i]
    if opening and line.startswith("#pragma"):
        out.append(line)
        i += 1
        continue
    if opening and line.startswith("//"):
        # The file's opening comment: what the header is for.
        block = []
        while i < len(lines) and lines[i].startswith("//"):
            block.append(lines[i][2:].strip())
            i += 1
        out.append("/** @file")
        out.extend(" * " + b for b in block)
        out.append(" */")
        opening = False
        continue
    if line.strip():
        opening = False
    if not inside and re.match(r"^namespace quorvane", line):
        inside = True
    if not inside and line.startswith("#define"):
        # The comment over a macro at file scope documents it.
        j = len(out) - 1
        while j >= 0 and re.match(r"^//(?!/)", out[j]):
            out[j] = "///" + out[j][2:]
            j -= 1
    if inside:
        ends_group = not line.strip() or re.match(r"^\s*(//|\}|public:|private:|protected:|Q_SIGNALS:)", line)
        if group_open and ends_group:
            out.append("///@}")
            group_open = False
        if re.match(r"^\s*//(?!/)", line):
            block = []
            while i < len(lines) and re.match(r"^\s*//(?!/)", lines[i]):
                block.append(re.sub(r"^(\s*)//\s?", r"\1/// ", lines[i]))
                i += 1
            # Two or more declarations under the comment: one group, one doc.
            run = 0
            while i + run < len(lines) and lines[i + run].strip() and DECLARATION.match(lines[i + run]):
                run += 1
            # A class or function body that opens under the comment is one entity.
            opens = run and lines[i].rstrip().endswith("{")
            if run > 1 and not opens:
                out.append("///@{")
                group_open = True
            out.extend(block)
            continue
        line = re.sub(r"(;|,|\{|\})(\s*)//(?![/<])\s?", r"\1\2///< ", line)
    out.append(line)
    i += 1
if group_open:
    out.append("///@}")
sys.stdout.write("\n".join(out))

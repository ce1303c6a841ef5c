"""Writes the messages of some files of the code, with their translation, as rows of C++.

usage: make-translations.py CATALOG.po OUTPUT FILE...

Rows are {"English", "translation"}, in the order of the bytes of the English. A message that is
fuzzy or has no translation has no row.
"""

import ast
import sys


def messages(path):
  """(references, flags, English, translation) of each message without a plural."""
  with open(path, encoding="utf-8") as file:
    blocks = file.read().split("\n\n")
  for block in blocks:
    texts, field, references, flags = {}, None, set(), ""
    for line in block.splitlines():
      if line.startswith("#: "):
        references.update(line[3:].split())
      elif line.startswith("#,"):
        flags += line
      elif line.startswith(("msgid", "msgstr", "msgctxt")):
        field, _, line = line.partition(" ")
        texts[field] = ast.literal_eval(line)
      elif line.startswith('"') and field:
        texts[field] += ast.literal_eval(line)
    if "msgid" in texts and "msgid_plural" not in texts:
      yield references, flags, texts["msgid"], texts.get("msgstr", "")


def quoted(text):
  """A literal of C++, byte for byte."""
  out = ""
  for byte in text.encode("utf-8"):
    plain = 32 <= byte < 127 and byte not in b'"\\?'
    out += chr(byte) if plain else "\\%03o" % byte
  return '"%s"' % out


def main():
  catalog, output, files = sys.argv[1], sys.argv[2], set(sys.argv[3:])
  rows = {english: text for references, flags, english, text in messages(catalog)
          if references & files and english and text and "fuzzy" not in flags}
  if not rows:
    raise SystemExit("%s has no message of %s" % (catalog, ", ".join(sorted(files))))
  with open(output, "w", encoding="ascii", newline="\n") as file:
    for english in sorted(rows, key=lambda text: text.encode("utf-8")):
      file.write("{%s,\n %s},\n" % (quoted(english), quoted(rows[english])))


main()

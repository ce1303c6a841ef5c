# A translation of a text for tests: with accents, longer by a third, and between brackets, so that
# one sees on a screen where a text is cut and where one was forgotten. Fields stay as they are, and
# so do the line feeds and blanks around it. For msgfilter --newline.

function accented(text,    out, depth, i, c, at) {
  out = ""
  depth = 0
  for (i = 1; i <= length(text); ++i) {
    c = substr(text, i, 1)
    if (c == "{") ++depth
    if (c == "}") --depth
    if (depth == 0 && (at = index("aeiouAEIOU", c)) > 0) c = accents[at]
    out = out c
  }
  return out
}

# A third of so many columns, with blanks at which a line may be broken.
function padding(columns,    out, i) {
  out = ""
  for (i = 1; i <= int((columns + 2) / 3); ++i) out = out (i % 6 == 1 ? " " : "~")
  sub(/ $/, "~", out)
  return out
}

BEGIN { split("á é í ó ú Á É Í Ó Ú", accents, " ") }

{ lines[++count] = $0 }

END {
  # Lines at the end that hold nothing stay behind the bracket.
  last = count
  while (last > 1 && lines[last] ~ /^ *$/) --last
  if (last > 1) {
    # Further lines instead of longer ones.
    more = int((last + 2) / 3)
  }
  for (i = 1; i <= last; ++i) {
    match(lines[i], /^ */)
    line = substr(lines[i], 1, RLENGTH)
    text = substr(lines[i], RLENGTH + 1)
    match(text, / *$/)
    tail = substr(text, RSTART)
    text = substr(text, 1, RSTART - 1)
    if (i == 1) line = line "⟦"
    line = line accented(text)
    if (i == last) {
      if (last == 1) line = line padding(length(text))
      for (extra = 1; extra <= more; ++extra) line = line "\n~~~~ ~~~~~ ~~~~~ ~~~~~"
      line = line "⟧"
    }
    print line tail
  }
  for (i = last + 1; i <= count; ++i) print lines[i]
}

#!/usr/bin/env python3
"""The C headers of hosts, read, and written as one file of C# and one unit of Pascal.

script/make-bindings uses it. What the headers have of comments is not taken over: hosts read those.
"""

import os
import re

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
HEADERS = (
    ("src/pal/protocols/lorimat/prot_def.h", None),
    ("include/lorimatrt/lorimatrt.h", "lorimatrt"),
    ("include/lorimatrt/lorimat_device.h", None),
    ("include/lorimatrt/lorimat.h", "lorimat-c"),
    ("include/lorimatrt/lorimat_register.h", "lorimat-register-c"),
)
# Of the older protocol: nothing takes them.
LEFT_OUT = {"PROTINFO", "PEcrBrdcIO", "PSendStRq", "PSendStExRq"}

POINTER = re.compile(r"(\w+) \(\*(\w+)\)\(([^()]*(?:\([^()]*\)[^()]*)*)\)")


class Face:
  """What the headers declare, in their order."""

  def __init__(self):
    self.numbers = []    # (name, value)
    self.opaque = set()  # names of structs that hosts have by their address alone
    self.structs = []    # (name, [Member])
    self.callbacks = []  # (name, result, [(kind, name)])
    self.functions = []  # (library, result, name, [(kind, name)])

  def struct_names(self):
    return {name for name, _ in self.structs}


class Member:
  def __init__(self, kind, name, count=0, callback=None):
    self.kind, self.name, self.count, self.callback = kind, name, count, callback


def declared(text):
  """A parameter or a member: its type without blanks around stars, and its name."""
  kind, name = re.match(r"(.*?)(\w+)$", text.strip(), re.S).groups()
  return re.sub(r"\s*\*", "*", " ".join(kind.split())), name


def parameters(text):
  """(type, name); those without a name are called a, b, ..."""
  found = []
  for number, one in enumerate(part.strip() for part in text.split(",")):
    if one in ("", "void"):
      continue
    if re.match(r"^(const )?\w+\**$", one):
      found.append((one, "abcdefgh"[number]))
    else:
      found.append(declared(one))
  return found


def members(text):
  found = []
  for one in text.split(";"):
    one = " ".join(one.split())
    if not one:
      continue
    pointer = POINTER.match(one)
    array = re.match(r"(.*)\[(\d+)\]$", one)
    if pointer:
      result, name, taken = pointer.groups()
      found.append(Member("callback", name, callback=(result, parameters(taken))))
    elif array:
      kind, name = declared(array.group(1))
      found.append(Member(kind, name, int(array.group(2))))
    else:
      found.append(Member(*declared(one)))
  return found


def read_face():
  face = Face()
  for header, library in HEADERS:
    with open(os.path.join(ROOT, header), encoding="utf-8") as file:
      text = re.sub(r"/\*.*?\*/", " ", file.read(), flags=re.S)
    abi = re.search(r"^#define (LORIMAT_ABI) (\d+)$", text, re.M)
    if abi:
      face.numbers.append((abi.group(1), int(abi.group(2))))
    text = re.sub(r"^#.*(\\\n.*)*$", "", text, flags=re.M).replace('extern "C" {', "")
    read_declarations(face, text, library, header)
  return face


def read_declarations(face, text, library, header):
  """Takes each declaration out of the text; what is left has to be nothing."""

  def enumeration(match):
    value = -1
    for row in match.group(1).split(","):
      if row.strip():
        name, _, given = (part.strip() for part in row.partition("="))
        value = int(given) if given else value + 1
        face.numbers.append((name, value))
    return ""

  def struct(match):
    if match.group(1) not in LEFT_OUT:
      face.structs.append((match.group(1), members(match.group(2))))
    return ""

  def opaque(match):
    face.opaque.add(match.group(1))
    return ""

  def callback(match):
    result, name, taken = match.groups()
    if name not in LEFT_OUT:
      face.callbacks.append((name, result, parameters(taken)))
    return ""

  def function(match):
    kind, name = declared(match.group(2))
    face.functions.append((library, kind, name, parameters(match.group(3))))
    return ""

  for pattern, take in (
      (r"(?:typedef )?enum \w+ \{([^{}]*)\}\s*\w*;", enumeration),
      (r"typedef struct \w+ \{([^{}]*)\} (\w+);", lambda m: struct(Swapped(m))),
      (r"typedef struct (\w+) \1;", opaque),
      (r"typedef %s;" % POINTER.pattern, callback),
      (r"(LORIMAT(?:RT|_C)_API) ([\w\s*]+?)\(([^()]*)\);", function)):
    text = re.sub(pattern, take, text)
  left = text.replace("}", "", 1).strip()
  if left:
    raise SystemExit("%s has declarations that are not read: %s" % (header, left[:200]))


class Swapped:
  """A match whose two groups change places."""

  def __init__(self, match):
    self.match = match

  def group(self, number):
    return self.match.group(3 - number)


def check_types(face, known):
  """Every type has its own in another language."""
  for _, result, name, taken in face.functions:
    for kind in [result] + [kind for kind, _ in taken]:
      base = kind.replace("const ", "").replace("*", "").strip()
      if base not in known and base not in face.opaque | face.struct_names() and not any(
          base == one for one, _, _ in face.callbacks):
        raise SystemExit("%s: there is no type for %s" % (name, kind))


def wrapped(text, indent, width=110):
  """A line of parameters, broken behind commas."""
  lines, line = [], ""
  for part in re.split(r"(?<=[,;(]) (?=[\[\w&@])", text):
    if line and len(indent if lines else "") + len(line) + 1 + len(part) > width:
      lines.append(line)
      line = part
    else:
      line = line + " " + part if line else part
  return ("\n" + indent).join(lines + [line])


# --- C#

CSHARP = {"void": "void", "bool": "bool", "int": "int", "long": "IntPtr", "double": "double",
          "char": "byte", "int8_t": "sbyte", "uint8_t": "byte", "uint16_t": "ushort",
          "int32_t": "int", "uint32_t": "uint", "int64_t": "long", "size_t": "UIntPtr"}
CSHARP_WORDS = {"event", "in", "out", "object", "string", "params", "ref", "base", "is", "as", "operator"}
CSHARP_FILES = {"lorimatrt": "Translator", "lorimat-c": "Face", "lorimat-register-c": "Register"}

CSHARP_HEAD = """// Made from the headers of C by script/make-bindings: change them, and it, there.
//
// liblorimatrt and its C face for C#: one file, to be compiled with a program of Mono or .NET. What each
// function does, and what it takes and gives, is told by the headers lorimatrt.h, lorimat.h and
// lorimat_register.h, whose names these are.
//
// - A `long` of C is an IntPtr, of which Long() makes a number: on Windows its low 32 bits are all.
// - A text that goes in is UTF-8; one that comes back is an address, of which Text() makes a string.
//   EcrCmd and TradInit take bytes (Bytes()), for lines are in the code page of the device.
// - A delegate that is given to the library, or stands in a lorimat_device, has to be kept by the program as
//   long as the library may call it: the library's copy does not count for the garbage collector. No
//   exception may leave it.
using System;
using System.Runtime.InteropServices;
using System.Text;

public static class Lorimat {
  // The files of the libraries; the loader adds ".so" or ".dll".
  const string Translator = "liblorimatrt";
  const string Face = "liblorimat-c";
  const string Register = "liblorimat-register-c";

  // What C has as long.
  public static long Long(IntPtr number) {
    bool windows = Environment.OSVersion.Platform == PlatformID.Win32NT;
    return windows ? unchecked((int)number.ToInt64()) : number.ToInt64();
  }

  // The text at an address of C, in UTF-8 unless another encoding is named; null for null.
  public static string Text(IntPtr text, Encoding encoding = null) {
    if (text == IntPtr.Zero) return null;
    int length = 0;
    while (Marshal.ReadByte(text, length) != 0) ++length;
    byte[] bytes = new byte[length];
    Marshal.Copy(text, bytes, 0, length);
    return (encoding ?? Encoding.UTF8).GetString(bytes);
  }

  // The text up to its NUL in a buffer that C has filled.
  public static string Text(byte[] buffer, Encoding encoding = null) {
    int length = Array.IndexOf(buffer, (byte)0);
    return (encoding ?? Encoding.UTF8).GetString(buffer, 0, length < 0 ? buffer.Length : length);
  }

  // A text as C takes it, with its NUL.
  public static byte[] Bytes(string text, Encoding encoding = null) {
    return (encoding ?? Encoding.UTF8).GetBytes(text + "\\0");
  }

"""


def csharp_name(name):
  return "@" + name if name in CSHARP_WORDS else name


def csharp_callback_type(kind, marshal=True):
  if kind.endswith("*"):
    return "IntPtr"
  return ("[MarshalAs(UnmanagedType.I1)] " if kind == "bool" and marshal else "") + CSHARP[kind]


def csharp_delegate(name, result, taken):
  head = "  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]\n"
  if result == "bool":
    head += "  [return: MarshalAs(UnmanagedType.I1)]\n"
  return head + wrapped("  public delegate %s %s(%s);" % (
      csharp_callback_type(result, False), name,
      ", ".join("%s %s" % (csharp_callback_type(kind), csharp_name(own)) for kind, own in taken)),
                        "      ") + "\n"


def csharp_parameter(face, kind, name, following):
  bare = kind.replace("const ", "")
  base = bare.replace("*", "")
  stars = bare.count("*")
  if kind == "const char*":
    return "[MarshalAs(UnmanagedType.LPUTF8Str)] string"
  if kind == "char*":
    return "byte[]"
  if base in face.struct_names() and stars == 1:
    return "[In, Out] %s[]" % base if following == "room" else "ref " + base
  if stars == 2:
    return "out IntPtr"
  if stars == 1 and base in CSHARP and base != "void":
    return "out " + CSHARP[base]
  if stars:
    return "IntPtr"
  return ("[MarshalAs(UnmanagedType.I1)] " if base == "bool" else "") + CSHARP.get(base, base)


def csharp(face, constants):
  check_types(face, CSHARP)
  out = [CSHARP_HEAD]
  out.append("  // --- Numbers\n\n")
  out += ["  public const int %s = %d;\n" % row for row in face.numbers + constants]
  out.append("\n  // --- Functions of the program that the libraries call\n\n")
  for name, result, taken in face.callbacks:
    out.append(csharp_delegate(name, result, taken))
  for name, parts in face.structs:
    for part in parts:
      if part.callback:
        out.append(csharp_delegate("%s_%s" % (name, part.name), *part.callback))
  out.append("\n  // --- Structs\n")
  for name, parts in face.structs:
    out.append("\n  [StructLayout(LayoutKind.Sequential)]\n  public struct %s {\n" % name)
    for part in parts:
      if part.callback:
        kind = "%s_%s" % (name, part.name)
      elif part.count:
        kind = "byte[]"
        out.append("    [MarshalAs(UnmanagedType.ByValArray, SizeConst = %d)]\n" % part.count)
      elif part.kind == "const char*":
        kind = "string"
        out.append("    [MarshalAs(UnmanagedType.LPUTF8Str)]\n")
      elif part.kind.endswith("*"):
        kind = "IntPtr"
      else:
        kind = CSHARP[part.kind]
        if kind == "bool":
          out.append("    [MarshalAs(UnmanagedType.I1)]\n")
      out.append("    public %s %s;\n" % (kind, csharp_name(part.name)))
    out.append("  }\n")
  out.append("\n  // --- Functions of the libraries\n")
  for library, result, name, taken in face.functions:
    kinds = [csharp_parameter(face, kind, own, taken[number + 1][1] if number + 1 < len(taken) else "")
             for number, (kind, own) in enumerate(taken)]
    variants = [kinds]
    if any(kind.startswith("const ") and found.startswith("ref ")
           for (kind, _), found in zip(taken, kinds)):
      # Where null says something.
      variants.append(["IntPtr" if found.startswith("ref ") else found for found in kinds])
    for variant in variants:
      out.append("\n  [DllImport(%s, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]\n" %
                 CSHARP_FILES[library])
      if result == "bool":
        out.append("  [return: MarshalAs(UnmanagedType.I1)]\n")
      back = "IntPtr" if result.endswith("*") else CSHARP[result]
      out.append(wrapped("  public static extern %s %s(%s);" % (back, name, ", ".join(
          "%s %s" % (found, csharp_name(own)) for found, (_, own) in zip(variant, taken))),
                         "      ") + "\n")
  out.append("}\n")
  return "".join(out)


# --- Pascal

PASCAL = {"bool": "Boolean", "int": "cint", "long": "clong", "double": "cdouble", "char": "AnsiChar",
          "int8_t": "cint8", "uint8_t": "cuint8", "uint16_t": "cuint16", "int32_t": "cint32",
          "uint32_t": "cuint32", "int64_t": "cint64", "size_t": "SizeUInt", "void": "Pointer"}
PASCAL_WORDS = {"to", "type", "file", "begin", "end", "string", "object", "operator", "class", "out",
                "property", "unit", "and", "or", "not", "in", "is", "as", "set", "var", "const", "array",
                "program", "label", "repeat", "until", "case", "of", "do", "with", "on"}
PASCAL_POINTERS = {"char": "PAnsiChar", "void": "Pointer", "int": "pcint", "long": "pclong",
                   "double": "pcdouble", "bool": "PBoolean", "int8_t": "pcint8", "uint8_t": "pcuint8",
                   "uint16_t": "pcuint16", "int32_t": "pcint32", "uint32_t": "pcuint32",
                   "int64_t": "pcint64", "size_t": "PSizeUInt"}

PASCAL_HEAD = """{ Made from the headers of C by script/make-bindings: change them, and it, there.

  liblorimatrt and its C face for Free Pascal: one unit. What each function does, and what it takes and
  gives, is told by the headers lorimatrt.h, lorimat.h and lorimat_register.h, whose names these are. A name
  that Pascal has for itself is written with "&", as in settings.&file; the function lorimat_abi, which would
  be the constant of that name, is lorimat_library_abi here.

  Texts are NUL-terminated. A string of the program is given by PAnsiChar(text); EcrCmd takes the bytes of the
  device's code page. Null is nil, and a struct of no file, clock and so on is one filled with zeros.
  No exception may leave a function that the library calls. }
unit lorimat;

{$mode objfpc}{$H+}
{$packrecords c}
{ Booleans and enumerations of the size that they have in C. }
{$minenumsize 4}

interface

uses
  ctypes;

{$ifdef unix}
{$linklib c}
const
  kTranslator = 'lorimatrt';
  kFace = 'lorimat-c';
  kRegister = 'lorimat-register-c';
{$else}
const
  kTranslator = 'liblorimatrt.dll';
  kFace = 'liblorimat-c.dll';
  kRegister = 'liblorimat-register-c.dll';
{$endif}
"""

PASCAL_TAIL = """
implementation

uses
  Math;

initialization
  { Pascal stops at what C computes with on purpose: infinities, and numbers that are rounded. }
  SetExceptionMask([exInvalidOp, exDenormalized, exZeroDivide, exOverflow, exUnderflow, exPrecision]);
end.
"""

# Letters of another case make no other name.
PASCAL_NAMES = {"lorimat_abi": "lorimat_library_abi"}
PASCAL_FILES = {"lorimatrt": "kTranslator", "lorimat-c": "kFace", "lorimat-register-c": "kRegister"}


def pascal_name(name):
  return "&" + name if name.lower() in PASCAL_WORDS else name


def pascal_type(face, kind):
  bare = kind.replace("const", "").replace(" ", "")
  base = bare.replace("*", "")
  stars = bare.count("*")
  if stars == 2:
    return "PPAnsiChar" if base == "char" else "PPointer"
  if stars == 1:
    if base in face.struct_names():
      return "P" + base
    return PASCAL_POINTERS.get(base, "Pointer")
  return PASCAL.get(base, base)


def pascal_head(face, name, result, taken):
  """procedure or function, with a name or without."""
  given = "; ".join("%s: %s" % (pascal_name(own), pascal_type(face, kind)) for kind, own in taken)
  given = "(%s)" % given if given else ""
  name = " " + name if name else ""
  if result == "void":
    return "procedure%s%s" % (name, given)
  return "function%s%s: %s" % (name, given, pascal_type(face, result))


def pascal(face, constants):
  check_types(face, PASCAL)
  out = [PASCAL_HEAD, "\nconst\n"]
  out += ["  %s = %d;\n" % row for row in face.numbers + constants]
  out.append("\ntype\n")
  for name, result, taken in face.callbacks:
    out.append(wrapped("  %s = %s; cdecl;" % (name, pascal_head(face, "", result, taken)), "    ") + "\n")
  for name, parts in face.structs:
    out.append("\n  P%s = ^%s;\n  %s = record\n" % (name, name, name))
    for part in parts:
      if part.callback:
        kind = pascal_head(face, "", *part.callback) + "; cdecl"
      elif part.count:
        kind = "array[0..%d] of AnsiChar" % (part.count - 1)
      else:
        kind = pascal_type(face, part.kind)
      out.append(wrapped("    %s: %s;" % (pascal_name(part.name), kind), "      ") + "\n")
    out.append("  end;\n")
  for library, result, name, taken in face.functions:
    out.append("\n" + wrapped(pascal_head(face, PASCAL_NAMES.get(name, name), result, taken) +
                               ";", "  ") +
               "\n  cdecl; external %s name '%s';\n" % (PASCAL_FILES[library], name))
  out.append(PASCAL_TAIL)
  return "".join(out)


# --- The layouts, as each language has them: programs that print "struct member offset size"

def layouts_c(face):
  out = ['#include <stdio.h>\n#include "lorimatrt/lorimat_register.h"\n#include <stddef.h>\n\n'
         "int main(void) {\n"]
  for name, parts in face.structs:
    out.append('  printf("%s %%d\\n", (int)sizeof(%s));\n' % (name, name))
    for part in parts:
      out.append('  printf("%s.%s %%d\\n", (int)offsetof(%s, %s));\n' % (name, part.name, name, part.name))
  return "".join(out) + "  return 0;\n}\n"


def layouts_pascal(face):
  out = ["program layouts;\n{$mode objfpc}{$H+}\nuses\n  lorimat;\nvar\n"]
  out += ["  a_%s: %s;\n" % (name, name) for name, _ in face.structs]
  out.append("begin\n")
  for name, parts in face.structs:
    out.append("  writeln('%s ', SizeOf(%s));\n" % (name, name))
    for part in parts:
      out.append("  writeln('%s.%s ', PtrUInt(@a_%s.%s) - PtrUInt(@a_%s));\n" % (
          name, part.name, name, pascal_name(part.name), name))
  return "".join(out) + "end.\n"


def layouts_csharp(face):
  out = ["using System;\nusing System.Runtime.InteropServices;\n\n"
         "static class Layouts {\n  static void Main() {\n"]
  for name, parts in face.structs:
    out.append('    Console.WriteLine("%s {0}", Marshal.SizeOf(typeof(Lorimat.%s)));\n' % (name, name))
    for part in parts:
      out.append('    Console.WriteLine("%s.%s {0}", Marshal.OffsetOf(typeof(Lorimat.%s), "%s"));\n' % (
          name, part.name, name, part.name))
  return "".join(out) + "  }\n}\n"


LAYOUTS = {"c": layouts_c, "csharp": layouts_csharp, "pascal": layouts_pascal}

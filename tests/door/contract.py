"""door/openapi.json as what may be asked and answered: strategies of requests, and judges of answers."""
import json
import pathlib
import re
import urllib.parse

import jsonschema
from hypothesis import strategies as st

API = json.loads((pathlib.Path(__file__).parents[2] / "door/openapi.json").read_text())
SAFE = ("get", "head", "options")
# Parameters of which a test takes what does not last.
QUICK = {"wait": ["0", "1"], "follow": ["false"]}


def resolved(part):
    """A part of the file, or what it refers to."""
    while "$ref" in part:
        target = API
        for name in part["$ref"][2:].split("/"):
            target = target[name]
        part = target
    return part


def validator(schema):
    """Of a schema that refers to others of the file."""
    return jsonschema.Draft202012Validator({**schema, "components": API["components"]})


class Operation:
    """A method of a path."""

    def __init__(self, path, method, row):
        self.path, self.method, self.row = path, method.upper(), row
        self.parameters = [resolved(one) for one in row.get("parameters", [])]
        content = row.get("requestBody", {}).get("content", {})
        self.body = content.get("application/json", {}).get("schema")
        self.is_safe = method in SAFE

    def __repr__(self):
        return f"{self.method} {self.path}"

    def place(self, name):
        """The parameters in the path, the query or the heads."""
        return [one for one in self.parameters if one["in"] == name]

    def allows(self, status, content_type, body):
        """What is wrong with an answer; nothing where the file allows it."""
        reply = self.row["responses"].get(str(status))
        if reply is None:
            return f"no answer {status}"
        content = resolved(reply).get("content", {})
        schema = content.get(content_type.split(";")[0])
        if schema is None:
            return f"{status} has no {content_type}"
        if "schema" not in schema or "json" not in content_type:
            return None
        fault = jsonschema.exceptions.best_match(validator(schema["schema"]).iter_errors(body))
        return fault and f"{status}: {fault.json_path}: {fault.message}"


OPERATIONS = [Operation(path, method, row) for path, rows in API["paths"].items()
              for method, row in rows.items()]


def operation_of(method, path):
    """The one that a request means."""
    for one in OPERATIONS:
        if one.method == method and re.fullmatch(re.sub(r"\{\w+\}", "[0-9]+", one.path), path):
            return one
    return None


# Values.
scalars = st.one_of(st.none(), st.booleans(), st.integers(-2, 10**20), st.floats(allow_nan=False),
                    st.text(max_size=20), st.sampled_from(["", "1e2", "-1", "NaN", "\u0000", "'", "#1="]))
anything = st.recursive(scalars, lambda inner: st.lists(inner, max_size=3) | st.dictionaries(
    st.text(max_size=8), inner, max_size=3), max_leaves=6)


def of_schema(schema):
    """Values that a schema allows, nearly all of them: what `not` forbids stays to the judge."""
    schema = resolved(schema)
    if "const" in schema:
        return st.just(schema["const"])
    if "enum" in schema:
        return st.sampled_from(schema["enum"])
    kind = schema.get("type")
    if "oneOf" in schema and kind != "object":
        return st.one_of(*map(of_schema, schema["oneOf"]))
    kinds = kind if isinstance(kind, list) else [kind]
    if len(kinds) > 1:
        return st.one_of(*(of_schema({**schema, "type": one}) for one in kinds))
    examples = [st.sampled_from(schema["examples"])] * 3 if "examples" in schema else []
    return st.one_of(*examples, *MAKERS[kind](schema))


def objects(schema):
    ways = [of.get("required", []) for of in schema.get("oneOf", [{}])]
    known = {name: of_schema(one) for name, one in schema.get("properties", {}).items()}
    either = {name for way in ways for name in way}
    found = []
    for way in ways:
        needed = {*schema.get("required", []), *way}
        found.append(st.fixed_dictionaries(
            {name: known[name] for name in known if name in needed},
            optional={name: one for name, one in known.items() if name not in needed | either}))
    return found


def texts(schema):
    if "pattern" in schema:
        return [st.from_regex(schema["pattern"], fullmatch=True)]
    most = min(schema.get("maxLength", 30), 30)
    latin = st.characters(min_codepoint=32, max_codepoint=255, blacklist_categories=("Cc", "Cs"))
    return [st.text(latin, min_size=schema.get("minLength", 0), max_size=most)]


MAKERS = {
    None: lambda schema: [anything],
    "null": lambda schema: [st.none()],
    "boolean": lambda schema: [st.booleans()],
    "integer": lambda schema: [st.integers(schema.get("minimum", 0), schema.get("maximum", 10**6))],
    "string": texts,
    "array": lambda schema: [st.lists(of_schema(schema["items"]), min_size=schema.get("minItems", 0),
                                      max_size=schema.get("minItems", 0) + 3)],
    "object": objects,
}


def changed(draw, value):
    """The value with something else somewhere in it."""
    if isinstance(value, dict) and value and draw(st.booleans()):
        name = draw(st.sampled_from(sorted(value)))
        return {**value, name: changed(draw, value[name])}
    if isinstance(value, list) and value and draw(st.booleans()):
        at = draw(st.integers(0, len(value) - 1))
        return value[:at] + [changed(draw, value[at])] + value[at + 1:]
    if isinstance(value, dict):
        way = draw(st.sampled_from(["more", "less", "other"]))
        if way == "more":
            return {**value, draw(st.text(max_size=6)): draw(anything)}
        if way == "less" and value:
            gone = draw(st.sampled_from(sorted(value)))
            return {name: one for name, one in value.items() if name != gone}
    if isinstance(value, list) and value and draw(st.booleans()):
        return value * draw(st.sampled_from([2, 10_000 // len(value) + 1]))
    if isinstance(value, str) and draw(st.booleans()):
        return value + draw(st.sampled_from(["\u0000", "\u03a9", "\r\n", "\U0001f600", "'", "\"", ",", "x" * 3000, "\ufffe"]))
    return draw(anything)


def spoilt(draw, text):
    """The text of a body as no JSON writer would write it. Whether it is still what it was is told."""
    way = draw(st.sampled_from(["cut", "twice", "deep", "bytes", "behind", "exponents"]))
    if way == "cut":
        return text[:draw(st.integers(0, max(len(text) - 1, 0)))].encode(), False
    if way == "twice":
        return ('{"desk":"a","desk":"a",' + text[1:]).encode(), False
    if way == "deep":
        return b'{"lines":' + b"[" * 5000 + b"]" * 5000 + b"}", False
    if way == "bytes":
        return text.encode() + draw(st.binary(min_size=1, max_size=4).filter(bytes.strip)), False
    if way == "behind":
        return ("\n \t" + text + " \r\n").encode(), True
    return re.sub(r'("expires_s": [0-9]+)', r"\1.0e0", text).encode(), True


class Asked:
    """A request: what is sent, and whether the file allows it."""

    def __init__(self, operation, target, headers, raw, is_allowed):
        self.operation, self.target, self.headers = operation, target, headers
        self.raw, self.is_allowed = raw, is_allowed

    def __repr__(self):
        return f"{self.operation.method} {self.target} {self.headers} {self.raw[:600]!r}"


@st.composite
def requests(draw, operation):
    """Requests of an operation: about half of them as the file has them."""
    is_allowed, headers, path, query = True, {}, operation.path, {}
    for one in operation.parameters:
        value = draw(of_schema(one["schema"]))
        if draw(st.integers(0, 11)) == 0:
            value = draw(scalars)
        text = {True: "true", False: "false", None: ""}.get(value, str(value))
        if one["in"] == "path":
            # Jobs that there are, now and then.
            text = draw(st.sampled_from(["1", "2", "3"])) if draw(st.booleans()) else text
            path = path.replace("{%s}" % one["name"], urllib.parse.quote(text, safe="") or "-")
        elif one["in"] == "query":
            # An answer that follows has no end.
            if one["name"] == "follow" or draw(st.booleans()):
                query[one["name"]] = draw(st.sampled_from(QUICK[one["name"]])) if one["name"] in QUICK else text
        elif draw(st.integers(0, 11)) != 0:
            # Heads have bytes; what is no text of them is no request of a client.
            headers[one["name"]] = re.sub(r"[^ -~]", "?", text).strip()
        elif one.get("required"):
            is_allowed = False
    # The head has the last word, and the query is not looked at then.
    overruled = "after" if "Last-Event-ID" in headers else None
    is_allowed &= all(fits(one["schema"], query[one["name"]]) for one in operation.place("query")
                      if one["name"] in query and one["name"] != overruled)
    # What is not sent takes no key, and looks at none.
    if query.get("dry_run") != "true":
        is_allowed &= all(fits(one["schema"], headers[one["name"]])
                          for one in operation.place("header") if one["name"] in headers)
    if draw(st.integers(0, 19)) == 0:
        query[draw(st.text(min_size=1, max_size=5))] = "1"
        is_allowed = is_allowed and all(any(name == one["name"] for one in operation.place("query"))
                                        for name in query)
    target = path + ("?" + urllib.parse.urlencode(query) if query else "")
    raw = b""
    if operation.body is not None:
        headers["Content-Type"] = "application/json"
        value = draw(of_schema(operation.body))
        if operation.body and draw(st.integers(0, 2)) == 0:
            value = changed(draw, value)
        is_good = validator(operation.body).is_valid(value)
        text = json.dumps(value, ensure_ascii=draw(st.booleans()))
        raw = text.encode("utf-8", "surrogatepass")
        if operation.body and draw(st.integers(0, 7)) == 0:
            raw, stays = spoilt(draw, text.encode("utf-8", "replace").decode())
            is_good = is_good and stays or not raw and not operation.row["requestBody"]["required"]
        is_allowed &= is_good
    return Asked(operation, target, headers, raw, is_allowed)


def fits(schema, text):
    """Whether the text of a parameter is a value of its schema."""
    kind = resolved(schema).get("type")
    if kind == "integer":
        return re.fullmatch("[0-9]{1,18}", text) is not None and validator(schema).is_valid(int(text))
    if kind == "boolean":
        return text in ("true", "false")
    # The end of a text is its end, whatever a line end is for a reader of patterns.
    return validator(schema).is_valid(text) and not text.endswith("\n")

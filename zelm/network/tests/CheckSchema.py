"""Holds network files against the schema: those that are shipped are of it, and some are not."""

import json
import pathlib
import sys

import jsonschema

WRONG = [
    [],
    {},
    {"zelm-network": 2},
    {"zelm-network": 1, "objects": {}},
    {"zelm-network": 1, "objects": [{"name": "a"}]},
    {"zelm-network": 1, "objects": [{"name": "", "creator": "A"}]},
    {"zelm-network": 1, "objects": [{"name": "a", "creator": "A", "values": {"x": None}}]},
    {"zelm-network": 1, "objects": [{"name": "a", "creator": "A", "values": {"x": {"type": "T"}}}]},
    {"zelm-network": 1, "objects": [{"name": "a", "creator": "A", "inputs": {"x": "a"}}]},
    {"zelm-network": 1, "objects": [{"name": "a", "creator": "A", "inputs": {"x": {"object": "a"}}}]},
    {"zelm-network": 1, "contexts": [{}]},
    {"zelm-network": 1, "request": [5]},
    {"zelm-network": 1, "save": [{"object": "a"}]},
]

schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
jsonschema.Draft7Validator.check_schema(schema)
validator = jsonschema.Draft7Validator(schema)
files = [pathlib.Path(name) for name in sys.argv[2:]]
assert files, "there are no network files"
for file in files:
    validator.validate(json.loads(file.read_text(encoding="utf-8")))
for network in WRONG:
    assert not validator.is_valid(network), network

"""Validates JSON objects, one per line of the second file, against the schema in the first.

Prints each that does not fit; exit status 1 if there is one, 3 without the validator.
"""

import json
import sys

try:
    from jsonschema import Draft202012Validator
except ImportError:
    sys.exit(3)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    Draft202012Validator.check_schema(schema)
    validator = Draft202012Validator(schema)
    wrong = 0
    with open(sys.argv[2], encoding="utf-8") as file:
        for line in file:
            for error in validator.iter_errors(json.loads(line)):
                print(f"{error.json_path}: {error.message}\nin {line}")
                wrong += 1
    return 1 if wrong else 0


sys.exit(main())

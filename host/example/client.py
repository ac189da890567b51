"""Keeps the checker running and asks it entry by entry: client.py COMPANY FILE..."""
import json
import subprocess
import sys

checker = subprocess.Popen(["kalcogcheck", "check", "--json", "--company", sys.argv[1], "-"],
                           stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")
for name in sys.argv[2:]:
    entry = json.load(open(name, encoding="utf-8"))
    print(json.dumps(entry), file=checker.stdin, flush=True)
    answer = json.loads(checker.stdout.readline())
    print(answer["id"], answer["result"], [finding["text"] for finding in answer["findings"]])

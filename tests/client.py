"""The README's client: the program answers each entry as soon as it is fed, as it answers a batch.

  client.py PROGRAM SOURCES
"""

import glob
import json
import os
import re
import subprocess
import sys
import tempfile

program, sources = (os.path.abspath(path) for path in sys.argv[1:3])
client = os.path.join(sources, "host/example/client.py")
with open(client, encoding="utf-8") as file:
    code = file.read().split('"""\n', 1)[1].strip()
with open(os.path.join(sources, "README.md"), encoding="utf-8") as file:
    quoted = re.search(r"```python\n(.*?)```", file.read(), re.S).group(1).strip()
if quoted != code:
    sys.exit("the README quotes another client than host/example/client.py")

samples = sorted(glob.glob(os.path.join(sources, "host/samples/*.json")))
environment = dict(os.environ, PYTHONIOENCODING="utf-8",
                   PATH=os.path.dirname(program) + os.pathsep + os.environ["PATH"])
with tempfile.TemporaryDirectory() as folder:
    company = os.path.join(folder, "prova.db")
    subprocess.run([program, "init", company, "--sample"], check=True, stdout=subprocess.DEVNULL)
    # It writes an entry only when it has read the answer to the one before.
    fed = subprocess.run([sys.executable, client, company, *samples], capture_output=True,
                         encoding="utf-8", env=environment, timeout=60)
    batch = subprocess.run([program, "check", "--json", "--company", company, *samples],
                           capture_output=True, encoding="utf-8")
expected = []
for line in batch.stdout.splitlines():
    answer = json.loads(line)
    expected.append(f'{answer["id"]} {answer["result"]} {[f["text"] for f in answer["findings"]]}')
if fed.stderr or len(samples) < 10 or fed.stdout.splitlines() != expected:
    sys.exit(f"fed one by one it answers otherwise: {fed.stderr}{fed.stdout}")

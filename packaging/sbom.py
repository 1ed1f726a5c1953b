#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the list of what the built programs are linked with, as SPDX 2.3 in JSON.

usage: sbom.py --version VERSION --output FILE PROGRAM...

Each shared library that the loader finds for a program is traced to its Debian package, with version,
architecture and licence. A library that belongs to no package ends it with 1: the list is complete or
it is not written. The licence is that of the copyright file's "Files: *" paragraph where every word
of it has a name in SPDX, otherwise NOASSERTION. Needs dpkg, ldd and readelf, and no network. With
SOURCE_DATE_EPOCH set, the same programs on the same packages give the same bytes.
"""
import argparse
import datetime
import hashlib
import json
import os
import re
import subprocess
import sys
import urllib.parse

NOTHING = 'NOASSERTION'
PLAIN = {name.lower(): spdx for name, spdx in (
    ('Expat', 'MIT'), ('MIT', 'MIT'), ('Zlib', 'Zlib'), ('ISC', 'ISC'), ('X11', 'X11'),
    ('Apache-2.0', 'Apache-2.0'), ('BSD-2-clause', 'BSD-2-Clause'), ('BSD-3-clause', 'BSD-3-Clause'),
    ('BSL-1.0', 'BSL-1.0'), ('MPL-2.0', 'MPL-2.0'), ('FTL', 'FTL'))}
GNU = re.compile(r'(GPL|LGPL|AGPL)-(\d)(\.\d)?(\+)?$', re.IGNORECASE)


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True,
                          env={**os.environ, 'LC_ALL': 'C.UTF-8'}).stdout


def spdx_licence(text):
    """An SPDX expression for a licence line of a Debian copyright file, or NOASSERTION."""
    result = []
    for word in re.split(r',?\s+(or|and)\s+|,\s*', text.strip(), flags=re.IGNORECASE):
        if not word:
            continue
        gnu = GNU.match(word)
        if word.lower() in ('or', 'and'):
            result.append(word.upper())
        elif gnu:
            last = '-or-later' if gnu.group(4) else '-only'
            result.append(gnu.group(1).upper() + '-' + gnu.group(2) + (gnu.group(3) or '.0') + last)
        elif word.lower() in PLAIN:
            result.append(PLAIN[word.lower()])
        else:
            return NOTHING
    # A list without "or" and "and" between its members does not say which is meant.
    good = len(result) % 2 == 1 and all((word in ('OR', 'AND')) == bool(place % 2)
                                        for place, word in enumerate(result))
    # What binds more tightly is not always what was meant.
    return ' '.join(result) if good and len(set(result[1::2])) < 2 else NOTHING


def declared_licence(package):
    try:
        with open(f'/usr/share/doc/{package}/copyright', encoding='utf-8', errors='replace') as file:
            text = file.read()
    except OSError:
        return NOTHING
    for paragraph in re.split(r'\n\s*\n', text):
        fields = dict(re.findall(r'^([A-Za-z-]+):[ \t]*(.*)$', paragraph, re.MULTILINE))
        if fields.get('Files', '').strip() == '*':
            return spdx_licence(fields.get('License', ''))
    return NOTHING


def libraries(program):
    """Where the loader finds each library of a program, by name."""
    result = {}
    for line in run('ldd', program).splitlines():
        words = line.split()
        if '=>' in words:
            if words[2] == 'not':
                sys.exit(f'sbom.py: {program}: {words[0]} is not found')
            result[words[0]] = words[2]
        elif words and words[0].startswith('/'):
            result[os.path.basename(words[0])] = words[0]
    return result


def needed(program):
    """The libraries that a program itself asks for."""
    return re.findall(r'\(NEEDED\).*\[(.*)\]', run('readelf', '-d', program))


def ways_to(path):
    """The names by which the package of a library may know it, the likeliest first."""
    whole = os.path.join(os.path.realpath(os.path.dirname(path)), os.path.basename(path))
    return path, whole, whole.replace('/usr/lib', '/lib', 1), os.path.realpath(path)


def owners(paths):
    """The package of each of the libraries."""
    names = sorted({name for path in paths for name in ways_to(path)})
    found = subprocess.run(('dpkg-query', '--search', *names), capture_output=True, text=True, check=False).stdout
    known = {}
    for line in found.splitlines():
        packages, _, name = line.rpartition(': ')
        if not line.startswith('diversion '):
            known[name] = packages.split(',')[0]
    result = {}
    for path in paths:
        result[path] = next((known[name] for name in ways_to(path) if name in known), None)
        if result[path] is None:
            sys.exit(f'sbom.py: {path} belongs to no package')
    return result


def identifier(kind, name):
    return f'SPDXRef-{kind}-' + re.sub(r'[^A-Za-z0-9.-]', '-', name)


def distribution():
    with open('/etc/os-release', encoding='utf-8') as file:
        fields = dict(re.findall(r'^(\w+)="?(.*?)"?$', file.read(), re.MULTILINE))
    return fields.get('ID', 'debian'), fields.get('VERSION_ID', ''), fields.get('NAME', 'Debian')


def package_entry(package, names):
    form = '${Package}\t${Version}\t${Architecture}\t${source:Package}'
    name, version, architecture, source = run('dpkg-query', '-W', '-f', form, package).split('\t')
    system, release, distributor = distribution()
    where = f'?arch={architecture}' + (f'&distro={system}-{release}' if release else '')
    escaped = urllib.parse.quote(version, safe='')
    return {
        'SPDXID': identifier('Package', name),
        'name': name,
        'versionInfo': version,
        'supplier': 'Organization: ' + distributor,
        'downloadLocation': NOTHING,
        'filesAnalyzed': False,
        'licenseConcluded': NOTHING,
        'licenseDeclared': declared_licence(name),
        'copyrightText': NOTHING,
        'sourceInfo': f'built from the source package {source}',
        'comment': ' '.join(sorted(names)),
        'primaryPackagePurpose': 'LIBRARY',
        'externalRefs': [{'referenceCategory': 'PACKAGE-MANAGER', 'referenceType': 'purl',
                          'referenceLocator': f'pkg:deb/{system}/{name}@{escaped}{where}'}],
    }


def own_entry(version):
    return {
        'SPDXID': identifier('Package', 'stallo'),
        'name': 'stallo',
        'versionInfo': version,
        'supplier': 'Organization: The Stallo authors',
        'downloadLocation': NOTHING,
        'filesAnalyzed': False,
        'licenseConcluded': 'MIT',
        'licenseDeclared': 'MIT',
        'copyrightText': 'Copyright (c) 2026 the Stallo authors',
        'primaryPackagePurpose': 'APPLICATION',
    }


def file_entry(program):
    with open(program, 'rb') as file:
        content = file.read()
    name = os.path.basename(program)
    return {
        'SPDXID': identifier('File', name),
        'fileName': './usr/bin/' + name,
        'fileTypes': ['BINARY'],
        'checksums': [{'algorithm': kind.upper(), 'checksumValue': hashlib.new(kind, content).hexdigest()}
                      for kind in ('sha1', 'sha256')],
        'licenseConcluded': 'MIT',
        'licenseInfoInFiles': [NOTHING],
        'copyrightText': NOTHING,
    }


def relation(first, kind, second):
    return {'spdxElementId': first, 'relationshipType': kind, 'relatedSpdxElement': second}


def document(version, programs):
    where = {program: libraries(program) for program in programs}
    package_of = owners({path for found in where.values() for path in found.values()})
    names = {}  # by package
    for found in where.values():
        for library, path in found.items():
            names.setdefault(package_of[path], set()).add(library)
    direct = {(program, package_of[where[program][library]])
              for program in programs for library in needed(program)}
    entries = {package: package_entry(package, names[package]) for package in sorted(names)}
    own = own_entry(version)
    files = [file_entry(program) for program in sorted(programs)]
    relations = [relation('SPDXRef-DOCUMENT', 'DESCRIBES', each['SPDXID']) for each in [own] + files]
    relations += [relation(own['SPDXID'], 'DEPENDS_ON', each['SPDXID']) for each in entries.values()]
    relations += [relation(identifier('File', os.path.basename(program)), 'DYNAMIC_LINK', entries[package]['SPDXID'])
                  for program, package in sorted(direct)]
    moment = datetime.datetime.fromtimestamp(
        int(os.environ.get('SOURCE_DATE_EPOCH') or datetime.datetime.now().timestamp()), datetime.timezone.utc)
    result = {
        'spdxVersion': 'SPDX-2.3',
        'dataLicense': 'CC0-1.0',
        'SPDXID': 'SPDXRef-DOCUMENT',
        'name': f'stallo-{version}',
        'creationInfo': {'created': moment.strftime('%Y-%m-%dT%H:%M:%SZ'),
                         'creators': ['Organization: The Stallo authors', f'Tool: stallo-sbom-{version}']},
        'packages': [own] + list(entries.values()),
        'files': files,
        'relationships': relations,
    }
    # Another list needs another name, and the same one the same.
    digest = hashlib.sha256(json.dumps(result, sort_keys=True).encode()).hexdigest()[:32]
    result['documentNamespace'] = f'https://stallo.invalid/spdx/stallo-{version}-{digest}'
    return result


def main():
    parser = argparse.ArgumentParser(description='Lists what the built programs are linked with.')
    parser.add_argument('--version', required=True)
    parser.add_argument('--output', required=True)
    parser.add_argument('programs', nargs='+')
    arguments = parser.parse_args()
    text = json.dumps(document(arguments.version, arguments.programs), indent=1, ensure_ascii=False) + '\n'
    with open(arguments.output, 'w', encoding='utf-8') as file:
        file.write(text)


if __name__ == '__main__':
    main()

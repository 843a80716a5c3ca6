#!/usr/bin/env python3
"""Makes sample rules and records from the country data of the package iso-codes.

usage: make_samples.py FOLDER [SOURCE]

FOLDER receives a definition (NAME.rule) and records (NAME.csv) for each of
  sites      country and subdivision by a layered tree of thousands of pairs, and a number per subdivision
  documents  a fixed prefix, a year macro and a number per year
  items      the country by a simple conversion, a letter and a number per country
SOURCE is the folder with the data, /usr/share/iso-codes/json unless given. What could not be taken over as it stands is
told on standard error.
"""
import csv
import json
import pathlib
import sys
import unicodedata

SOURCE = "/usr/share/iso-codes/json"
SUBDIVISION_LENGTH = 3
ZERO_DATE = "1899-12-30 00:00:00"
FIXED, MACRO, FIELD, NUMBER, LETTER = range(5)
NO_SWAP, SIMPLE_SWAP, LAYERS_SWAP = range(3)


def read(folder, name):
    path = pathlib.Path(folder) / f"iso_{name}.json"
    try:
        return json.loads(path.read_text(encoding="utf-8"))[name]
    except OSError as error:
        sys.exit(f"error: cannot read {path} ({error.strerror}); install the package iso-codes")


class Texts:
    """Makes names fit for texts in which "," and ";" separate and nothing is escaped, and counts what it changed."""

    def __init__(self):
        self.changed = set()

    def fit(self, name):
        fitted = name.replace(", ", " - ").replace(",", " ").replace("; ", " - ").replace(";", " ")
        if fitted != name:
            self.changed.add(name)
        return fitted


def folded(name):
    """Names that a comparison without regard to case could take for the same one have the same folded form."""
    decomposed = unicodedata.normalize("NFKD", name).casefold()
    return "".join(character for character in decomposed if character.isalnum())


class Tree:
    """A relation tree: pairs of code and value, each pair under another one or in the first layer."""

    def __init__(self):
        self.nodes = []
        self.codes = set()
        self.values = set()

    def add(self, code, value, parent=""):
        """The number of the new pair; none when its layer has the code or the value already."""
        if (parent, code) in self.codes or (parent, folded(value)) in self.values:
            return None
        self.codes.add((parent, code))
        self.values.add((parent, folded(value)))
        self.nodes.append((parent, len(self.nodes) + 1, code, value))
        return len(self.nodes)

    def text(self):
        return ";".join([str(len(self.nodes))] + [",".join(map(str, node)) for node in self.nodes])


def band(name, style, *, swap=NO_SWAP, default="", form="", length=1, item="", value="", tracks=(), tree="0"):
    counted = style in (NUMBER, LETTER)
    start = {NUMBER: "1", LETTER: "A"}.get(style, "")
    end = "Z" if style == LETTER else ""
    values = [name, style, swap, default, form, length, item, 1 if counted else 0, start, end, "", ZERO_DATE, value,
              ",".join(tracks), tree, 1, 1]
    return ["16"] + [f"{key}={text}" for key, text in enumerate(values)] + ["17"]


def definition(bands, fields=(), macros=(), layers=(), tree=None):
    # The first line is the code style, 0, before the number of the next entry.
    lines = ["02", "0"] + [text for entry in range(3, 9) for text in (str(entry), "1")]
    lines += ["11", "2", "12", "1", "13", "1"]
    for entry, names in (("14", fields), ("15", macros)):
        if names:
            lines += [entry, ";".join(f"{name},," for name in names)]
    for one in bands:
        lines += one
    if layers:
        lines += ["17", ";".join(f"{name},," for name in layers)]
    if tree:
        lines += ["9", tree.text()]
    return "#####" + "\r".join(lines)


def write(folder, name, rule, columns, records):
    (folder / f"{name}.rule").write_text(rule, encoding="utf-8", newline="")
    with open(folder / f"{name}.csv", "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(columns)
        writer.writerows(records)


def country_names(countries, texts):
    return {country["alpha_2"]: texts.fit(country.get("common_name", country["name"])) for country in countries}


def make_sites(folder, countries, subdivisions, former, texts):
    """Every subdivision is a site of the subdivision that it is part of, or of its own."""
    tree, names, left_out = Tree(), country_names(countries, texts), []
    roots = {code: tree.add(code, name) for code, name in names.items()}
    places = {}
    for subdivision in subdivisions:
        country, code = subdivision["code"].split("-", 1)
        name = texts.fit(subdivision["name"])
        padded = code.rjust(SUBDIVISION_LENGTH, "0")
        if not tree.add(padded, name, roots[country]):
            name = f"{name} ({code})"
            if not tree.add(padded, name, roots[country]):
                left_out.append(subdivision["code"])
        places[subdivision["code"]] = name
    records = []
    for subdivision in subdivisions:
        country = subdivision["code"].split("-", 1)[0]
        parent = subdivision.get("parent", "")
        place = parent if "-" in parent else f"{country}-{parent}"
        records.append((names[country], places.get(place, places[subdivision["code"]]), subdivision["name"]))
    # Countries that are no more: nobody opens an office there, and the rule has to say so.
    records += [(texts.fit(country["name"]), "", "Embassy") for country in former]
    rule = definition(
        [band("Country", FIELD, swap=LAYERS_SWAP, length=2, item="Country"),
         band("Dash", FIXED, default="-"),
         band("Subdivision", FIELD, swap=LAYERS_SWAP, length=SUBDIVISION_LENGTH, item="Subdivision"),
         band("Dash2", FIXED, default="-"),
         band("Number", NUMBER, default="1", form="000", length=3, tracks=("Country", "Subdivision"))],
        fields=("Country", "Subdivision"), layers=("Country", "Subdivision"), tree=tree)
    write(folder, "sites", rule, ("Country", "Subdivision", "Site"), records)
    print(f"sites: {len(tree.nodes)} pairs, {len(records)} records, left out: {', '.join(left_out) or 'none'}",
          file=sys.stderr)


def make_documents(folder, former):
    """Each withdrawal of a country code is a notice of its year."""
    by_date = sorted(former, key=lambda country: country["withdrawal_date"])
    records = [(country["withdrawal_date"][:4], f"Withdrawal of {country['alpha_4']}, {country['name']}")
               for country in by_date]
    rule = definition(
        [band("Prefix", FIXED, default="WD-"),
         band("Year", MACRO, length=4, item="Year"),
         band("Dash", FIXED, default="-"),
         band("Number", NUMBER, default="1", form="000000", length=6, tracks=("Year",))],
        macros=("Year",))
    write(folder, "documents", rule, ("Year", "Subject"), records)
    print(f"documents: {len(records)} records", file=sys.stderr)


def make_items(folder, countries, subdivisions, texts):
    """Every subdivision is an item of its country, under the country's code of three letters."""
    tree, names, left_out = Tree(), country_names(countries, texts), []
    for country in countries:
        if not tree.add(country["alpha_3"], names[country["alpha_2"]]):
            left_out.append(country["alpha_3"])
    rule = definition(
        [band("Country", FIELD, swap=SIMPLE_SWAP, length=3, item="Country", tree=tree.text()),
         band("Series", LETTER, value="A"),
         band("Number", NUMBER, default="1", form="0000", length=4, tracks=("Country", "Series"))],
        fields=("Country",))
    records = [(names[subdivision["code"].split("-", 1)[0]], subdivision["code"], subdivision["type"])
               for subdivision in subdivisions]
    write(folder, "items", rule, ("Country", "Place", "Kind"), records)
    print(f"items: {len(tree.nodes)} pairs, {len(records)} records, left out: {', '.join(left_out) or 'none'}",
          file=sys.stderr)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    source = sys.argv[2] if len(sys.argv) == 3 else SOURCE
    folder.mkdir(parents=True, exist_ok=True)
    countries, former = read(source, "3166-1"), read(source, "3166-3")
    subdivisions = read(source, "3166-2")
    texts = Texts()
    make_sites(folder, countries, subdivisions, former, texts)
    make_documents(folder, former)
    make_items(folder, countries, subdivisions, texts)
    print(f"names with a separator in them, written without it: {len(texts.changed)}", file=sys.stderr)


if __name__ == "__main__":
    main()

"""Rules for tests, written as definition texts."""
ZERO_DATE = "1899-12-30 00:00:00"
FIXED, MACRO, FIELD, NUMBER = range(4)


def band(name, style, default="", form="", length=1, item="", tracks=()):
    values = [name, style, 0, default, form, length, item, int(style == NUMBER), "1" if style == NUMBER else "", "", "",
              ZERO_DATE, "", ",".join(tracks), "0", 1, 1]
    return ["16"] + [f"{key}={value}" for key, value in enumerate(values)] + ["17"]


def rule(bands, fields=()):
    lines = ["02", "0"] + [text for entry in range(3, 9) for text in (str(entry), "1")]
    lines += ["11", "2", "12", "1", "13", "1", "14", ";".join(f"{name},," for name in fields)]
    return "#####" + "\r".join(lines + [line for one in bands for line in one])


def numbered(digits=6, default="1", tracks=("Year",), dash="-"):
    """A year, a dash and a number."""
    return rule([band("Year", FIELD, length=4, item="Year"), band("Dash", FIXED, default=dash),
                 band("Number", NUMBER, default=default, form="0" * digits, length=digits, tracks=tracks)], ("Year",))


def lettered():
    """Three free characters and a number for each of them."""
    return rule([band("Text", FIELD, length=3, item="Text"),
                 band("Number", NUMBER, default="1", form="000", length=3, tracks=("Text",))], ("Text",))


def unnumbered():
    return rule([band("Year", FIELD, length=4, item="Year")], ("Year",))

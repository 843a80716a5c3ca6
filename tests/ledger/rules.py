"""Rules for tests, written as definition texts."""
ZERO_DATE = "1899-12-30 00:00:00"
FIXED, MACRO, FIELD, NUMBER = range(4)


def band(name, style, default="", form="", length=1, item="", tracks=(), swap=0, relations="0"):
    values = [name, style, swap, default, form, length, item, int(style == NUMBER), "1" if style == NUMBER else "", "",
              "", ZERO_DATE, "", ",".join(tracks), relations, 1, 1]
    return ["16"] + [f"{key}={value}" for key, value in enumerate(values)] + ["17"]


def rule(bands, fields=(), macros=(), calendar=(1, 1, 2, "00:00"), layers=(), relations=""):
    """Macros are names beside their descriptions; the calendar is where its year, month, week and day begin."""
    lines = ["02", "0"] + [text for entry in range(3, 9) for text in (str(entry), "1")]
    lines += ["10", calendar[3]] if calendar[3] != "00:00" else []
    lines += ["11", str(calendar[2]), "12", str(calendar[1]), "13", str(calendar[0])]
    lines += ["14", ";".join(f"{name},," for name in fields)] if fields else []
    lines += ["15", ";".join(f"{name},,,{description}" for name, description in macros)] if macros else []
    lines += [line for one in bands for line in one]
    lines += ["17", ";".join(f"{name},," for name in layers), "9", relations] if layers else []
    return "#####" + "\r".join(lines)


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

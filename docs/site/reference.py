"""The reference: one page for each class, made from the headers' comments and the class tables.

    reference.py --source REPOSITORY --out FOLDER

Headers and tables are read by python/make_help.py; here stands what a page shows of them. Units
are told by the names of parameters; a name that is not known here is an error.
"""

import argparse
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "python"))
import make_help  # noqa: E402

WIDTH = 76  # of a signature: a page's column

LENGTH = "length"
ELEVATION = "elevation"
GON = "centesimal angle"
RADIANS = "radians"
DEGREES = "degrees"
NUMBER = "number"
NONE = "none"

# The unit of a parameter by its name; the first that fits counts.
UNITS = tuple((re.compile(names), unit) for names, unit in (
    (r"Angulo|aZ", GON),
    (r"Angulo_Centec", "unit that RPi scales"),
    (r"An", "angle"),
    (r"sRadians", "ratio"),
    (r"n?Ptos1?|nVer|Nv|napex|Pc", "count"),
    (r"Indice|TheIndex|ordenIndices|NewInd", "point numbers"),
    (r"LowerBound|UpperBound", "subscript"),
    (r"Loc|CapaP", "code"),
    (r"Ver|Aviso|Paralelas|SECORTAN", "flag"),
    (r"codigo|Nombre|String[12]", "text"),
    (r"f|Progreso1|ProgressBar1", "object"),
    (r"Z|[Zz][12]|rZ[12]|PZ|Vz[123]|Cotas|(Max|Min)Z", ELEVATION),
    (r"Distancia|distanc|DistOr?|tolerancia|Precision", LENGTH),
    (r"d?[xyXY]|[xyXY][0-4ip]|[XY][XYRc]|(Max|Min)[XY]|[XY](R[12]|t[12]|terr|inic)|X[Bb]ase|YBase"
     r"|[xy]pt|[Xy]APEX|XAPEX|[PqTV][xy][123]?|P[123][xy]|R[12x]?[XYxy][12]", LENGTH),
    (r"SwpVal|value|max|Min|DoubleA|TheArray|MatrizOrigen|Matriz_a_Sumar", NUMBER),
))

# Where a member means something else by such a name, or its answer is no flag.
OF_MEMBER = {
    ("cgeo_Algorismos", "An360", "An"): GON,
    ("cgeo_Algorismos", "An400", "An"): DEGREES,
    ("cgeo_FuncDeriv", "Pi", ""): NUMBER,
    ("cgeo_FuncDeriv", "RPi", ""): "radians in one unit",
    **{("cgeo_FuncDeriv", name, "X"): NUMBER
       for name in ("F_Log10", "F_LogN", "F_SenH", "F_CosH", "F_TanH")},
    **{("cgeo_FuncDeriv", name, ""): NUMBER
       for name in ("F_Log10", "F_LogN", "F_SenH", "F_CosH", "F_TanH", "F_Sen", "F_Cos", "F_Tan")},
    **{("cgeo_FuncDeriv", name, ""): RADIANS for name in ("F_ArcSen", "F_ArcCos")},
    **{("cgeo_Algorismos", name, ""): RADIANS for name in ("Atan2", "Atn2", "Arccos")},
    **{("cgeo_Algorismos", name, ""): LENGTH for name in (
        "Distancia_Punto_Punto_l", "Distancia_Punto_Linea_s", "Distancia_Punto_Linea",
        "Longitud_Linea_s", "Longitud_Linea")},
    **{("cgeo_Algorismos", name, ""): "-1, 0 or a length" for name in (
        "Toca_Punto_Recta_s", "Toca_Punto_Recta", "Toca_Punto_Recta_sSN")},
    **{("cgeo_Algorismos", name, ""): "code" for name in ("PntOnLine", "PntOnLine_s")},
    **{("cgeo_Algorismos", name, ""): DEGREES for name in ("An360", "GetAngle3P")},
    ("cgeo_Algorismos", "An400", ""): GON,
    **{("cgeo_Algorismos", name, ""): ELEVATION
       for name in ("Triangulo_Cota_1p_interior", "Cota_en_alineacion")},
    ("cgeo_Algorismos", "Triangulo_pendiente", ""): "percent",
    **{("cgeo_Geometria", name, ""): GON for name in ("GF_Angulo_de_1Recta", "GF_angulo_3_puntos")},
    **{("cgeo_Geometria", name, ""): LENGTH for name in ("GF_Distancia", "GF_Distancia_S")},
    **{("cgeo_Terreno", name, ""): ELEVATION for name in (
        "TF_Y_del_Terreno_dando_su_X", "TF_ProyeccVertical_de_X_en_1R", "TF_Yminima_del_Terreno",
        "TF_Ymaxima_del_Terreno")},
    **{("cgeo_Terreno", name, parameter): ELEVATION for name, parameter in (
        ("TF_Y_del_Terreno_dando_su_X", "Y"), ("TF_ProyeccVertical_de_X_en_1R", "Yt1"),
        ("TF_ProyeccVertical_de_X_en_1R", "Yt2"), ("TF_Yminima_del_Terreno", "Y"),
        ("TF_Ymaxima_del_Terreno", "Y"), ("TR_Cotas_en_unTerreno_dando_DistOr", "Yterr"))},
}

CPP_TYPES = {short: spelled for spelled, short in make_help.TYPES.items()}
NUMBERS = re.compile(r"(?<![\w.])(3|5|6|7|9|10|11|13|91|429|438|440|449|450)(?![\w.]\d|\w)")


def unit_of(of_class, member, parameter):
    key = (of_class.name, member.name, parameter)
    if key in OF_MEMBER:
        return OF_MEMBER[key]
    if not parameter:
        if member.result == "bool":
            return "flag"
        raise make_help.Unclear(f"{of_class.name}.{member.name}: its answer has no unit")
    for names, unit in UNITS:
        if names.fullmatch(parameter):
            return unit
    raise make_help.Unclear(f"{of_class.name}.{member.name}: {parameter} has no unit")


# ---- Failures ---------------------------------------------------------------


def failing_sentences(comment):
    for paragraph, _ in make_help.paragraphs(comment):
        told = False
        for sentence in re.split(r"(?<=[.;])\s", paragraph):
            told = told and not re.match(r"Source|Slopes", sentence)
            told = told or bool(re.search(r"\b[Ff]ail", sentence))
            if told:
                yield sentence


def numbers_in(comment):
    return sorted({int(one) for sentence in failing_sentences(comment)
                   for one in NUMBERS.findall(sentence)})


def links(numbers):
    return ", ".join(f"[{one}](../failures.md)" for one in numbers)


def relatives(of_class, member, classes):
    """Members whose failures are this member's too: those that its comment names where it
    tells of failures, and the first of which it says that it is made."""
    first = re.sub(r"\(compare [^)]*\)", "", first_words(member.comment))
    yield from list(named_in(first, of_class, member, classes))[:1]
    failing = " ".join(failing_sentences(member.comment))
    yield from named_in(failing, of_class, member, classes)
    above = neighbour(of_class, member)
    if above and re.match(r"The same\b", first_words(member.comment)):
        yield of_class, above


def named_in(text, of_class, member, classes):
    """The methods that a text names, in its order; of another class only with its name."""
    known = {}
    for other_class in classes:
        for other in other_class.members:
            of_other = "" if other_class is of_class else other_class.name + "."
            if other is not member and not make_help.is_property(other):
                known[of_other + other.name] = (other_class, other)
    for name in re.findall(r"[\w.]+", text):
        if name.rstrip(".") in known:
            yield known[name.rstrip(".")]


def first_words(comment):
    return make_help.first_sentence(comment)


def neighbour(of_class, member):
    at = of_class.members.index(member)
    return of_class.members[at - 1] if at else None


def does_nothing(member):
    return bool(re.match(r"Does nothing|Retired", first_words(member.comment)))


def failures(of_class, member, classes):
    if does_nothing(member):
        return "none"
    said = []
    own = numbers_in(member.comment)
    if own:
        said.append(links(own))
    for other_class, other in relatives(of_class, member, classes):
        said.append("those of " + link(of_class, other_class, other))
    shared = [one for one in numbers_in(of_class.comment) if one not in own]
    if shared and not make_help.is_property(member):
        said.append(f"of every member of the class {links(shared)}")
    if re.search(r"Never fails", " ".join(member.comment)):
        said = ["none: what fails is skipped"]
    return "; ".join(dict.fromkeys(said)) or "none of its own"


def anchor(member):
    return member.name.lower()


def link(of_class, other_class, member):
    page = "" if other_class is of_class else other_class.name + ".md"
    return f"[`{member.name}`]({page}#{anchor(member)})"


# ---- Pages ------------------------------------------------------------------


def shown(comment):
    """The comment as Markdown: names of parameters and members stay as they are spelled."""
    parts = []
    for text, labelled in make_help.paragraphs(comment):
        text = escaped(text)
        parts.append(re.sub(r"(\w+):", r"**\1:**", text, count=1) if labelled else text)
    return "\n\n".join(parts)


def escaped(text):
    return re.sub(r"([*_<>|\[\]])", r"\\\1", text)


def signature(member):
    if make_help.is_property(member):
        return f"{CPP_TYPES[member.result]} {member.name};"
    parameters = ", ".join(cpp_parameter(one).replace(" ", "\0") for one in member.parameters)
    result = "void" if member.result == "none" else CPP_TYPES[member.result]
    text = f"{result} {member.name}({parameters}) const;"
    lines = textwrap.wrap(text, WIDTH, subsequent_indent="    ", break_long_words=False)
    return "\n".join(lines).replace("\0", " ")


def cpp_parameter(one):
    constant = "const " if one.by_reference and not one.written else ""
    return f"{constant}{CPP_TYPES[one.type]}{'&' if one.by_reference else ''} {one.name}"


def use_of(one):
    use = make_help.shown_use(one).replace(": a Ref", "")
    return use + (f", optional: {make_help.shown_default(one)} when left out" if one.optional else "")


def parameter_table(of_class, member):
    if not member.parameters:
        return []
    rows = ["| parameter | type | unit | what happens to it |", "|---|---|---|---|"]
    rows += [f"| `{one.name}` | {make_help.shown_type(one)} | {unit_of(of_class, member, one.name)} "
             f"| {use_of(one)} |" for one in member.parameters]
    return [*rows, ""]


def answer(of_class, member):
    if member.result == "none":
        return NONE
    return f"{member.result}, {unit_of(of_class, member, '')}"


def written(member):
    names = [f"`{one.name}`" for one in member.parameters if one.written]
    return ", ".join(names) or "nothing"


def member_lines(of_class, member, classes):
    kind = ""
    if make_help.is_property(member):
        kind = " (read and write)" if len(member.kinds) > 1 else " (read)"
    places = ", ".join(map(str, member.positions))
    remarks = [make_help.wrapped(one) for one in make_help.remarks(of_class, member)]
    return [
        f"## {member.name}", "", "```cpp", signature(member), "```", "",
        shown(member.comment), "",
        *parameter_table(of_class, member),
        "| | |", "|---|---|",
        f"| Answer | {answer(of_class, member)} |",
        f"| Written | {written(member)} |",
        f"| Failures | {failures(of_class, member, classes)} |",
        f"| Position | {places}{kind} |", "",
        *(["In Python: " + " ".join(" ".join(remarks).split()), ""] if remarks else []),
    ]


def page(of_class, classes):
    lines = [f"# {of_class.name}", "", shown(of_class.comment), "",
             f"Registered as `{of_class.registered_name}`. The guide with pictures and examples: "
             f"[{of_class.name}](../guides/{of_class.name}.md).", "",
             "| member | in short |", "|---|---|"]
    for member in of_class.members:
        first = escaped(make_help.first_sentence(member.comment))
        lines.append(f"| {link(of_class, of_class, member)} | {first} |")
    lines.append("")
    for member in of_class.members:
        lines += member_lines(of_class, member, classes)
    return "\n".join(lines)


def pages(source):
    """The pages by their file names."""
    classes = make_help.read_classes(source)
    return {f"{one.name}.md": page(one, classes) for one in classes}


def class_names(source):
    return [one.name for one in make_help.read_classes(source)]


def write(source, out):
    out.mkdir(parents=True, exist_ok=True)
    for name, text in pages(source).items():
        (out / name).write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", type=pathlib.Path, default=ROOT)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    given = parser.parse_args()
    write(given.source, given.out)


if __name__ == "__main__":
    main()

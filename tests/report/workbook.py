#!/usr/bin/python3
"""Reads the sample workbooks of test_report back and compares them with what they were made of.

workbook.py TEST_PROGRAM [--recalculate]: with --recalculate every formula is also computed by
LibreOffice and has to come to the value that the workbook holds for it.
"""
import datetime
import decimal
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

import openpyxl

SHEET_ROWS = 12


def text(value):
    return re.sub("_x([0-9A-Fa-f]{4})_", lambda m: chr(int(m[1], 16)), value)


def check(condition, *what):
    if not condition:
        sys.exit("workbook: " + " ".join(str(each) for each in what))


def decimals(number_format):
    return len(number_format.split(";")[0].partition(".")[2].rstrip("_ "))


def check_number(cell, digits, where):
    number = decimal.Decimal(digits)
    if len(number.normalize().as_tuple().digits) > 15:
        check(cell.data_type == "s" and cell.value == digits, where, cell.value, "not", digits)
        check(cell.alignment.horizontal == "right", where, "is not to the right")
        return
    check(cell.data_type == "n", where, cell.data_type)
    check(float(cell.value) == float(number), where, repr(cell.value), "not", digits)
    check(decimals(cell.number_format) == -number.as_tuple().exponent, where, cell.number_format)


def check_cell(cell, expected, where):
    if expected is None or expected == {"text": ""}:
        return check(cell.value is None, where, cell.value)
    kind, value = next(iter(expected.items()))
    if kind == "text":
        check(cell.data_type == "s", where, "is no text:", cell.data_type)
        check(text(cell.value) == text(value), where, repr(cell.value), "not", repr(value))
    elif kind in ("amount", "count"):
        check_number(cell, str(value), where)
    elif kind == "date" and value < "1900":
        check(cell.value == value, where, cell.value)
    elif kind == "date":
        check(cell.is_date and cell.number_format == "yyyy-mm-dd", where, cell.number_format)
        check(cell.value == datetime.datetime.fromisoformat(value), where, cell.value, "not", value)
    else:
        check(cell.value == ", ".join(name for name, _ in value), where, cell.value)
        check(cell.hyperlink is not None, where, "leads nowhere")


def check_total(cell, cached, expected, rows, column, levels, where):
    """A formula where the workbook's numbers come to the total, else the total itself."""
    kind, value = next(iter(expected.items())) if expected else (None, None)
    if kind not in ("amount", "count"):
        return check_cell(cell, expected, where)
    amounts = [row["cells"][column] for row in rows if not row["detail"]]
    numbers = [decimal.Decimal(str(next(iter(cell.values())))) for cell in amounts]
    exceeds = any(len(n.normalize().as_tuple().digits) > 15 for n in numbers)
    if sum(numbers) == decimal.Decimal(str(value)) and not exceeds:
        check(cell.data_type == "f", where, "is no formula:", cell.value)
        check(("SUMIF(" if levels else "SUM(") in cell.value, where, cell.value)
        check(float(cached.value) == float(value), where, cached.value, "not", value)
    elif exceeds:
        check(cell.data_type == "s" and cell.value == str(value), where, cell.value)
    else:
        check_number(cell, str(value), where)


def check_sheet_form(sheet, head, first, last, columns):
    where = sheet.title
    check(len(where.encode("utf-16-le")) <= 62 and not re.search(r"[\[\]:*?/\\'#]", where), where)
    check(sheet.max_row <= SHEET_ROWS, where, "has", sheet.max_row, "rows")
    check(sheet["A2"].hyperlink is not None, where, "has no way back")
    check(sheet.freeze_panes and sheet.freeze_panes.endswith(str(first)), where, sheet.freeze_panes)
    titles = (sheet.print_title_rows or "").replace("$", "").split(":")
    check(titles[-1] == str(head), where, "repeats", titles)
    if last >= first:
        area = f"A{head}:{openpyxl.utils.get_column_letter(columns)}{last}"
        check(sheet.auto_filter.ref == area, where, "filters", sheet.auto_filter.ref)
    check(sheet.page_setup.orientation == "landscape", where, "is no landscape")
    check(sheet.page_setup.fitToHeight == 0 and sheet.sheet_properties.pageSetUpPr.fitToPage, where)
    for name, dimension in sheet.column_dimensions.items():
        check(8 <= dimension.width < 61, where, name, "is", dimension.width, "wide")


def check_table(table, sheets, cached):
    rows, columns = list(table["rows"]), table["columns"]
    levels = 1 if any(row["detail"] for row in rows) else 0
    parts = 0
    while rows or not parts:
        sheet, parts = next(sheets), parts + 1
        check(text(sheet["A1"].value) == table["title"], sheet.title, "is titled", sheet["A1"].value)
        names = [column["name"] for column in columns]
        head = next(r for r in (4, 5) if [sheet.cell(r, levels + i + 1).value
                                          for i in range(len(names))] == names)
        at = first = head + 1
        while rows and at < SHEET_ROWS:
            row = rows.pop(0)
            where = f"{sheet.title} row {at}"
            if levels:
                check(sheet.cell(at, 1).value == (2 if row["detail"] else 1), where, "level")
                check(sheet.row_dimensions[at].outlineLevel == row["detail"], where, "outline")
            for i, cell in enumerate(row["cells"]):
                check_cell(sheet.cell(at, levels + i + 1), cell, f"{where} {names[i]}")
            at += 1
        check_sheet_form(sheet, head, first, at - 1, levels + len(columns))
        note = sheet["A3"].value or ""
        check(("上接工作表" in note) == (parts > 1) and ("下接工作表" in note) == bool(rows), note)
        ruled = {str(area.sqref).split(":")[0] for area in sheet.conditional_formatting}
        for i, column in enumerate(columns):
            cell = f"{openpyxl.utils.get_column_letter(levels + i + 1)}{first}"
            check((cell in ruled) == column["difference"], sheet.title, column["name"], ruled)
    for i, total in enumerate(table["totals"]):
        cell = sheet.cell(at, levels + i + 1)
        check_total(cell, cached[sheet.title][cell.coordinate], total, table["rows"], i, levels,
                    f"{sheet.title} total {columns[i]['name']}")


def check_links(book):
    for sheet in book:
        for row in sheet.iter_rows():
            for cell in row:
                if not cell.hyperlink:
                    continue
                name, _, place = cell.hyperlink.location.rpartition("!")
                target = book[name.strip("'")]
                check(target[place].row <= target.max_row, cell.hyperlink.location)
                # A voucher's own name, alone or behind a step's number.
                number = re.fullmatch("v([0-9]+)", str(cell.value))
                if number:
                    check("记-" + number[1] in [c.value for c in target[target[place].row]],
                          cell.value, "leads to", cell.hyperlink.location)


def check_book(file, expected):
    book, cached = openpyxl.load_workbook(file), openpyxl.load_workbook(file, data_only=True)
    properties = book.properties
    check([properties.title, properties.subject, properties.creator] ==
          [expected["title"], expected["subject"], expected["author"]], file.name, "properties")
    check(properties.created == datetime.datetime(2009, 4, 2, 10), properties.created)
    check(book.worksheets[0]["A1"].value == expected["title"], file.name, "summary")
    names = [name.casefold() for name in book.sheetnames]
    check(len(set(names)) == len(names), names)
    sheets = iter(book.worksheets[1:])
    for table in expected["tables"]:
        check_table(table, sheets, cached)
    check(next(sheets, None) is None, file.name, "has a sheet too many")
    check_links(book)


def without_cached_values(file, copy):
    with zipfile.ZipFile(file) as book, zipfile.ZipFile(copy, "w") as result:
        for part in book.namelist():
            content = book.read(part)
            if part.startswith("xl/worksheets/sheet"):
                content = re.sub(b"</f><v>[^<]*</v>", b"</f>", content)
            result.writestr(part, content)


def check_recalculated(file, folder):
    copy = folder / ("bare_" + file.name)
    without_cached_values(file, copy)
    subprocess.run(["soffice", "--headless", f"-env:UserInstallation=file://{folder}/profile",
                    "--convert-to", "xlsx", "--outdir", folder / "recalculated", copy],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    formulas, cached = openpyxl.load_workbook(file), openpyxl.load_workbook(file, data_only=True)
    again = openpyxl.load_workbook(folder / "recalculated" / copy.name, data_only=True)
    count = 0
    for number, sheet in enumerate(formulas):
        for row in sheet.iter_rows():
            for cell in row:
                if cell.data_type != "f":
                    continue
                count += 1
                held = cached.worksheets[number][cell.coordinate].value
                found = again.worksheets[number][cell.coordinate].value
                check(held == found, sheet.title, cell.coordinate, cell.value, held, "became", found)
    return count


def main():
    program, *options = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([program, "--gtest_filter=Workbook.Samples"], check=True,
                       stdout=subprocess.DEVNULL, env={**os.environ, "VELMORA_WORKBOOKS": name})
        files = sorted(folder.glob("*.xlsx"))
        check(len(files) > 1, "no samples")
        if "--recalculate" in options:
            check(sum(check_recalculated(file, folder) for file in files) > 5, "few formulas")
        for file in [] if options else files:
            check_book(file, json.loads(file.with_suffix(".json").read_text()))


main()

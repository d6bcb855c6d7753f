"""Reads drawings with ezdxf, which shares no code with the host, and says what is wrong with them."""

import re

import ezdxf


def read(path):
    """The drawing, or an exception when the reader refuses it."""
    return ezdxf.readfile(str(path))


def complaints(document):
    """What the audit found: errors it could not mend, then what it had to mend."""
    auditor = document.audit()
    return [f"{entry.entity}: {entry.message}" for entry in auditor.errors + auditor.fixes]


def record_items(entity, annotation_type):
    """The items of one annotation record: tuples of name, handle, prefix, value, suffix, separator,
    kind, extra. None when the entity has no such record."""
    if not entity.has_extension_dict:
        return None
    entries = entity.get_extension_dict().dictionary
    for key, record in entries.items():
        if key.lower() != annotation_type.lower():
            continue
        texts = [tag.value for tag in record.tags if tag.code == 1]
        if len(texts) != len(record.tags) or len(texts) % 8:
            raise ValueError(f"{entity}: record {key} is not a row of items: {record.tags}")
        return [tuple(texts[at:at + 8]) for at in range(0, len(texts), 8)]
    return None


def plain_text(text):
    """Undoes the escapes that the reader leaves in texts: \\U+XXXX and carets."""
    text = re.sub(r"\\U\+([0-9A-Fa-f]{4})", lambda match: chr(int(match[1], 16)), text)
    text = text.encode("utf-16", "surrogatepass").decode("utf-16", "replace")
    return re.sub(r"\^([@-_ ])", lambda match: "^" if match[1] == " " else chr(ord(match[1]) - 64), text)

#!/usr/bin/env python3
"""What Python's email package reads in a message file, as one JSON line.

Usage: mailcheck.py FILE [FILE ...]; one line per file (mailcheck.py --mbox
FILE: one line per message of the mbox file):
  {"headers": n, "defects": [...], "subject": s, "messageId": s, "body": s,
   "attachments": [{"sha256": h, "size": n, "message": bool}]}
The body is the first text/plain part that is no attachment (else the first
text/html one), decoded by its charset; every other leaf part is an
attachment (an attached message counts as one, its bytes aside).
"""
import email
import email.errors
import email.header
import email.policy
import hashlib
import json
import sys


def defects_of(message):
    found = []
    for part in message.walk():
        found += [type(d).__name__ for d in part.defects]
    return found


def is_attachment(part):
    return (part.get_content_disposition() == "attachment"
            or part.get_param("filename", header="content-disposition") is not None
            or part.get_param("name") is not None)


def text_of(part):
    data = part.get_payload(decode=True) or b""
    if part.get_content_maintype() == "multipart":
        data = part.get_payload().encode("ascii", "surrogateescape")
    charset = part.get_content_charset() or "us-ascii"
    # Valid UTF-8 under a Western label is UTF-8 (a common mailer fault).
    if charset in ("us-ascii", "iso-8859-1", "windows-1252") or charset.startswith("iso-8859-1"):
        charset = "utf-8" if is_utf8(data) else charset
    for name in (charset, "utf-8", "windows-1252"):
        try:
            return data.decode(name)
        except (LookupError, UnicodeDecodeError):
            continue
    return data.decode("latin-1")


def is_utf8(data):
    try:
        data.decode("utf-8")
        return True
    except UnicodeDecodeError:
        return False


def raw_text(data):
    """Raw 8-bit header bytes: UTF-8, else the Western code page."""
    for name in ("utf-8", "windows-1252"):
        try:
            return data.decode(name)
        except UnicodeDecodeError:
            continue
    return data.decode("latin-1")


def header_text(value):
    if isinstance(value, str) and any("\udc80" <= c <= "\udcff" for c in value):
        return raw_text(value.encode("ascii", "surrogateescape"))
    try:
        return str(email.header.make_header(email.header.decode_header(value)))
    except (LookupError, UnicodeError, email.errors.HeaderParseError):
        return str(value)


def leaves(part):
    if part.get_content_maintype() == "message" or not part.is_multipart():
        yield part
        return
    for sub in part.get_payload():
        yield from leaves(sub)


def check(path):
    # From bytes: a file object would translate CR LF into LF.
    with open(path, "rb") as f:
        message = email.message_from_bytes(f.read(), policy=email.policy.compat32)
    all_leaves = list(leaves(message))
    body = None
    for subtype in ("plain", "html"):
        for part in all_leaves:
            if part.get_content_type() == "text/" + subtype and not is_attachment(part):
                body = part
                break
        if body is not None:
            break
    if body is None and len(all_leaves) == 1 and all_leaves[0].get_content_maintype() == "multipart":
        body = all_leaves[0]  # a multipart whose boundary never comes: its text
    attachments = []
    for part in all_leaves:
        if part is body:
            continue
        if part.get_content_type() == "message/rfc822":
            attachments.append({"sha256": "", "size": 0, "message": True})
            continue
        if part.get_content_maintype() == "message":  # delivery reports: a leaf, its bytes not compared
            attachments.append({"sha256": "", "size": 0, "message": False})
            continue
        data = part.get_payload(decode=True) or b""
        attachments.append({"sha256": hashlib.sha256(data).hexdigest(), "size": len(data), "message": False})
    subjects = [value for name, value in message.raw_items() if name.lower() == "subject"]
    subject = header_text(subjects[0]) if len(subjects) == 1 else None  # a repeated one: no telling which
    message_id = message.get("message-id")
    return {
        "headers": len(message.keys()),
        "defects": defects_of(message),
        "subject": subject,
        "messageId": str(message_id).strip().strip("<>").strip() if message_id else None,
        "body": text_of(body) if body is not None else None,
        "bodyIsHtml": body is not None and body.get_content_type() == "text/html",
        "attachments": attachments,
    }


def check_mbox(path):
    import mailbox
    import tempfile
    import os
    for message in mailbox.mbox(path, create=False):
        with tempfile.NamedTemporaryFile(delete=False) as f:
            f.write(message.as_bytes(unixfrom=False))
        try:
            print(json.dumps(check(f.name)))
        finally:
            os.unlink(f.name)


if __name__ == "__main__":
    if sys.argv[1:2] == ["--mbox"]:
        check_mbox(sys.argv[2])
        sys.exit(0)
    for name in sys.argv[1:]:
        try:
            print(json.dumps(check(name)))
        except Exception as error:  # a file Python cannot read at all
            print(json.dumps({"error": repr(error)}))

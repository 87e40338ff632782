#pragma once
// Small helpers around GMime for the mail formats: the library set-up,
// ownership of its objects, and byte and text conversions.

#include "GMimeInclude.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <memory>

// Initialises GMime once per process.
void EnsureGMime();

struct GObjectUnref {
    void operator()(void *object) const
    {
        if (object)
            g_object_unref(object);
    }
};
// Owns one reference of a GObject (a GMimeMessage, GMimePart, stream ...).
template<typename T>
using GPtr = std::unique_ptr<T, GObjectUnref>;

struct GFreeDeleter {
    void operator()(void *memory) const { g_free(memory); }
};
// Owns a string that GMime or GLib returned for the caller to free.
using GString8 = std::unique_ptr<char, GFreeDeleter>;

// Text that GMime returns (UTF-8); null gives "".
[[nodiscard]] inline QString FromGText(const char *text)
{
    return text ? QString::fromUtf8(text) : QString();
}

// All bytes of a memory stream.
[[nodiscard]] QByteArray MemoryStreamBytes(GMimeStream *stream);
// A memory stream holding a copy of the bytes.
[[nodiscard]] GPtr<GMimeStream> MemoryStreamOf(const QByteArray &bytes);

// Bytes of a text in a named character set to a string. An unknown label
// or bytes that do not fit it fall back to UTF-8 when the bytes are valid
// UTF-8, else to Windows-1252, so that a wrong label never loses a letter.
[[nodiscard]] QString DecodeCharset(const QByteArray &bytes, const QString &charset);

// A store date (local wall clock) as a GLib date in the local zone, and back.
[[nodiscard]] GDateTime *ToGDateTime(const QDateTime &when);
[[nodiscard]] QDateTime FromGDateTime(GDateTime *when);

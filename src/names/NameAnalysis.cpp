// The name analysis: tokens get a type by table lookups in a fixed order of
// precedence; position and neighbourhood settle what the tables leave open.
#include "names/NameCorrectionFunctions.h"

#include "frame/GlobalFunctions.h"
#include "frame/RunHost.h"
#include "names/NameTables.h"

#include <QList>

namespace {

const int kErrorNameParser = 2502;

enum class TokenType {
    None, Comma, Open, Close, Hyphen, TitleDipl, TitleDr, TitleProf, Address,
    FirstName, MiddleName, LastName, Suffix
};

// The tokens of one call with their types and the small queries on them.
struct NameTokens {
    QStringList text;           // as typed, after padding
    QStringList folded;         // case-folded, for the lookups
    QList<TokenType> type;
    QStringList gender;         // Gender of each token that became a first name
    int max = -1;               // last index; -1 for an empty name

    explicit NameTokens(const QString &padded)
    {
        if (!padded.isEmpty())
            text = padded.split(u' ');
        max = int(text.size()) - 1;
        folded.reserve(text.size());
        for (const QString &t : std::as_const(text))
            folded.append(t.toCaseFolded());
        type.fill(TokenType::None, max + 2);
        gender.resize(max + 2);
    }

    [[nodiscard]] int count(TokenType t) const
    {
        int n = 0;
        for (int i = 0; i <= max; ++i)
            n += type[i] == t ? 1 : 0;
        return n;
    }

    // Index of the n-th token of this type, counted from 1; -1 if fewer.
    [[nodiscard]] int findNth(TokenType t, int n) const
    {
        for (int i = 0; i <= max; ++i) {
            if (type[i] == t && --n == 0)
                return i;
        }
        return -1;
    }

    // Index of the first token of this type; max + 1 if none.
    [[nodiscard]] int findFirst(TokenType t) const
    {
        const int i = findNth(t, 1);
        return i < 0 ? max + 1 : i;
    }

    [[nodiscard]] bool isHerr(int i) const { return text[i].compare(QLatin1String("herr"), Qt::CaseInsensitive) == 0; }
};

// Company marks, compared on the padded text with case ignored. The tokens
// of that text are its blank-separated words, so a one-token mark is found
// as a token.
bool isBusinessName(const QString &padded, const NameTokens &tk, const NameTables &t)
{
    for (const QString &token : tk.folded) {
        if (t.businessTokens.contains(token))
            return true;
    }
    // One text serves all three: " text ", seen whole, without its first
    // blank, and without both blanks.
    QString framed;
    framed.reserve(padded.size() + 2);
    framed.append(u' ').append(padded.toCaseFolded()).append(u' ');
    const QStringView view(framed);
    return t.businessWordsFramed.foundIn(view) || t.businessInStr.foundIn(view.sliced(1, view.size() - 2))
        || t.businessEnds.foundIn(view.sliced(1));
}

void typePunctuation(NameTokens &tk)
{
    for (int i = 0; i <= tk.max; ++i) {
        const QString &s = tk.text[i];
        if (s == u",")
            tk.type[i] = TokenType::Comma;
        else if (s == u"(" || s == u"[" || s == u"{")
            tk.type[i] = TokenType::Open;
        else if (s == u")" || s == u"]" || s == u"}")
            tk.type[i] = TokenType::Close;
    }
}

// Title spans, longest first: a span counts when it starts at or behind the
// end of the last span found in this pass. Spans joined with the separator
// are looked up in the table; none can reach past the last token.
void typeTitleSpans(NameTokens &tk, const QSet<QString> &table, qsizetype longest, int maxSpan,
                    QChar separator, TokenType titleType)
{
    int limit = tk.max < maxSpan ? tk.max + 1 : maxSpan;
    int spanEnd = 0;
    QString joined;
    for (int i = 0; i <= tk.max; ++i) {
        if (i >= spanEnd) {
            // Lengths that could hit, found shortest first, taken longest first.
            int hitLength = 0;
            joined.clear();
            for (int length = 1; length <= limit; ++length) {
                if (length > 1 && !separator.isNull())
                    joined += separator;
                joined += tk.folded[i + length - 1];
                if (joined.size() > longest)
                    break;
                if (table.contains(joined))
                    hitLength = length;
            }
            if (hitLength > 0) {
                spanEnd = i + hitLength;
                for (int k = i; k < spanEnd; ++k)
                    tk.type[k] = titleType;
            }
        }
        if (limit + i > tk.max)
            --limit;
    }
}

void typeByTables(NameTokens &tk, const NameTables &t)
{
    for (int i = 1; i <= tk.max; ++i) {
        if (t.hyphens.contains(tk.folded[i]))
            tk.type[i] = TokenType::Hyphen;
    }
    typeTitleSpans(tk, t.titlesDipl, t.longestDipl, 8, QChar(), TokenType::TitleDipl);
    typeTitleSpans(tk, t.titlesDr, t.longestDr, 6, u' ', TokenType::TitleDr);
    for (int i = 0; i <= tk.max; ++i) {
        if (t.titlesProf.contains(tk.folded[i]))
            tk.type[i] = TokenType::TitleProf;
    }
    for (int i = 0; i <= tk.max; ++i) {
        if (t.addresses.contains(tk.folded[i]))
            tk.type[i] = TokenType::Address;
    }
    // A typed name never displaces a title, salutation or connector, except
    // the initial "U."; a lower-case "v." (von) is never a first name.
    for (int i = 0; i <= tk.max; ++i) {
        const auto found = t.firstNames.constFind(tk.folded[i]);
        if (found == t.firstNames.cend())
            continue;
        const QString &s = tk.text[i];
        if ((s == u"U." || tk.type[i] == TokenType::None) && s != u"v.") {
            tk.type[i] = TokenType::FirstName;
            tk.gender[i] = found.value();
        }
    }
    for (int i = 0; i <= tk.max; ++i) {
        if (t.suffixes.contains(tk.folded[i]))
            tk.type[i] = TokenType::Suffix;
    }
    for (int i = 0; i <= tk.max; ++i) {
        if (tk.type[i] == TokenType::None)
            tk.type[i] = TokenType::LastName;
    }
}

// When every token found a table, the last name is settled by the comma, by
// a second "Herr", or as the last of several first names.
void findLastName(NameTokens &tk)
{
    const int commas = tk.count(TokenType::Comma);
    if (commas > 0 && tk.count(TokenType::LastName) == 0) {
        for (int n = 1; n <= commas; ++n) {
            const int p = tk.findNth(TokenType::Comma, n);
            if (p >= n && p >= 1) {
                if (tk.type[p - 1] == TokenType::FirstName || tk.isHerr(p - 1))
                    tk.type[p - 1] = TokenType::LastName;
                break;
            }
        }
    }
    if (tk.count(TokenType::LastName) == 0) {
        for (int i = tk.max; i >= 0; --i) {
            if (tk.isHerr(i) && (i > tk.findFirst(TokenType::Address) || i > tk.findFirst(TokenType::FirstName))) {
                tk.type[i] = TokenType::LastName;
                break;
            }
        }
    }
    const int firstNames = tk.count(TokenType::FirstName);
    if (tk.count(TokenType::LastName) == 0
        && ((tk.count(TokenType::Address) >= 1 && firstNames == 1) || firstNames >= 2)) {
        tk.type[tk.findNth(TokenType::FirstName, firstNames)] = TokenType::LastName;
    }
}

void markMiddleNames(NameTokens &tk)
{
    const int firstNames = tk.count(TokenType::FirstName);
    if (firstNames < 2)
        return;
    QList<int> later;
    for (int n = 2; n <= firstNames; ++n)
        later.append(tk.findNth(TokenType::FirstName, n));
    for (int p : std::as_const(later))
        tk.type[p] = TokenType::MiddleName;
}

// Connectors join like parts; every decision sees the types as they stood
// before the first change.
void resolveConnectors(NameTokens &tk)
{
    using T = TokenType;
    QList<QPair<int, T>> queue;
    const int hyphens = tk.count(T::Hyphen);
    for (int n = 1; n <= hyphens; ++n) {
        const int p = tk.findNth(T::Hyphen, n);
        if (p < 1 || p >= tk.max)
            continue;
        const T left = tk.type[p - 1];
        const T right = tk.type[p + 1];
        const bool nextToFirst = left == T::FirstName || right == T::FirstName || tk.isHerr(p - 1)
            || tk.isHerr(p + 1) || left == T::MiddleName || right == T::MiddleName;
        if (left == right) {
            queue.append({p, left});
        } else if (left == T::FirstName && right == T::MiddleName) {
            queue.append({p, T::FirstName});
            queue.append({p + 1, T::FirstName});
        } else if ((left == T::LastName || right == T::LastName) && nextToFirst) {
            queue.append({p, T::LastName});
            queue.append({left != T::LastName ? p - 1 : p + 1, T::LastName});
        }
    }
    for (const auto &change : std::as_const(queue))
        tk.type[change.first] = change.second;
    // Connectors and closing brackets join what stands before them, opening
    // brackets what stands behind them.
    for (int i = 0; i <= tk.max; ++i) {
        if (i > 0) {
            if (tk.type[i] == T::Hyphen)
                tk.type[i] = tk.type[i - 1];
            if (tk.type[i] == T::Close)
                tk.type[i] = tk.type[i - 1];
        }
        if (i < tk.max && tk.type[i] == T::Open)
            tk.type[i] = tk.type[i + 1];
    }
}

QString salutationFromGender(const NameTokens &tk)
{
    if (tk.count(TokenType::FirstName) == 0 || tk.count(TokenType::Address) > 0)
        return {};
    for (int i = 0; i <= tk.max; ++i) {
        if (tk.type[i] != TokenType::FirstName)
            continue;
        if (tk.gender[i] == u"W")
            return QStringLiteral("Frau");
        if (tk.gender[i] == u"M")
            return QStringLiteral("Herr");
    }
    return {};
}

// Tokens hold no blanks and a part never ends in one, so joining needs no
// trimming: the first token of a part comes without separator.
void appendPart(QString &part, const QString &separator, const QString &token)
{
    if (!part.isEmpty())
        part.append(separator);
    part.append(token);
}

struct NameParts {
    QString address, first, middle, last, dr, dipl, prof, suffix;
};

// Joins the tokens of each part; no blank before a hyphen or a closing
// bracket, and none behind a hyphen or an opening bracket.
NameParts assemble(const NameTokens &tk, const QString &salutation)
{
    NameParts parts;
    parts.address = salutation;
    for (int i = 0; i <= tk.max; ++i) {
        const QString &s = tk.text[i];
        QString separator = QStringLiteral(" ");
        if (s == u"-" || s == u")" || s == u"]" || s == u"}")
            separator.clear();
        if (i > 0) {
            const QString &before = tk.text[i - 1];
            if (before == u"-" || before == u"(" || before == u"[" || before == u"{")
                separator.clear();
        }
        QString *part = nullptr;
        switch (tk.type[i]) {
        case TokenType::Address: part = &parts.address; break;
        case TokenType::FirstName: part = &parts.first; break;
        case TokenType::MiddleName: part = &parts.middle; break;
        case TokenType::LastName: part = &parts.last; break;
        case TokenType::TitleDr: part = &parts.dr; break;
        case TokenType::TitleDipl: part = &parts.dipl; break;
        case TokenType::TitleProf: part = &parts.prof; break;
        case TokenType::Suffix: part = &parts.suffix; break;
        default: break;
        }
        if (part)
            appendPart(*part, separator, s);
    }
    return parts;
}

QString joinTitle(const NameParts &parts)
{
    QStringList pieces;
    for (const QString *p : {&parts.address, &parts.prof, &parts.dr, &parts.dipl}) {
        if (!p->isEmpty())
            pieces.append(*p);
    }
    return pieces.join(u' ');
}

} // namespace

QString PadNameDelimiters(const QString &text)
{
    // One pass: white space of any kind (tabs, line breaks and no-break
    // spaces from pasted text) is a blank, commas, semicolons (as commas),
    // hyphens and brackets stand between blanks, the apostrophe becomes an
    // acute accent; runs of blanks shrink to one, none at either end.
    QString out(text.size() * 3, Qt::Uninitialized);
    QChar *const begin = out.data();
    QChar *p = begin;
    const auto blank = [&] {
        if (p != begin && p[-1] != u' ')
            *p++ = u' ';
    };
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u',':
        case u';':
            blank();
            *p++ = u',';
            *p++ = u' ';
            break;
        case u'-':
        case u'(':
        case u'[':
        case u'{':
        case u')':
        case u']':
        case u'}':
            blank();
            *p++ = c;
            *p++ = u' ';
            break;
        case u'\'':
            *p++ = QChar(0x00B4);
            break;
        default:
            if (c.isSpace())
                blank();
            else
                *p++ = c;
        }
    }
    if (p != begin && p[-1] == u' ')
        --p;
    out.truncate(p - begin);
    return out;
}

bool AnalyzeFullName(const QString &FullName, QString &Title, QString &FirstName, QString &MiddleName,
                     QString &LastName, QString &Suffix, bool &IsBusiness, bool CheckBusiness)
{
    NameTablesError error;
    const NameTables *tables = CurrentNameTables(error);
    if (!tables) {
        ShowError(error.description, error.number, kErrorNameParser, QString());
        CurrentRunHost().SetRunning(false);
        return false;
    }
    const QString padded = PadNameDelimiters(FullName);
    NameTokens tokens(padded);
    IsBusiness = false;
    if (CheckBusiness)
        IsBusiness = isBusinessName(padded, tokens, *tables);

    typePunctuation(tokens);
    typeByTables(tokens, *tables);
    findLastName(tokens);
    markMiddleNames(tokens);
    resolveConnectors(tokens);
    const NameParts parts = assemble(tokens, salutationFromGender(tokens));

    Title = joinTitle(parts);
    FirstName = parts.first;
    MiddleName = parts.middle;
    LastName = parts.last;
    Suffix = parts.suffix;
    return true;
}

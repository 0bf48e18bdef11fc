#include "pki/pkiname.h"

namespace {

bool add(X509_NAME* pName, const char* shortName, const unsigned char* text, int length)
{
    return X509_NAME_add_entry_by_txt(pName, shortName, MBSTRING_UTF8, text, length, -1, 0) == 1;
}

/// Adds the first attribute of a kind, when another name has one with a text.
bool addFirst(X509_NAME* pName, const char* shortName, const X509_NAME* pOther)
{
    const int position = X509_NAME_get_index_by_NID(pOther, OBJ_sn2nid(shortName), -1);
    if (position < 0) {
        return true;
    }
    unsigned char* converted = nullptr;
    const int length = ASN1_STRING_to_UTF8(
        &converted, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(pOther, position)));
    const PkiLibraryBytes text(converted);
    return length == 0 || (length > 0 && add(pName, shortName, converted, length));
}

} // namespace

bool PkiName_Add(X509_NAME* pName, const char* shortName, const UaString& text) noexcept
{
    return add(pName, shortName, reinterpret_cast<const unsigned char*>(text.toUtf8()),
               text.length());
}

PkiHandle<X509_NAME> PkiName_Build(const UaPkiIdentity& identity) noexcept
{
    PkiHandle<X509_NAME> name(X509_NAME_new());
    for (const PkiNameField& row : PkiName_Fields) {
        const UaString& text = identity.*row.field;
        if (name == nullptr || (!text.isEmpty() && !PkiName_Add(name.get(), row.shortName, text))) {
            return nullptr;
        }
    }
    return name;
}

PkiHandle<X509_NAME> PkiName_Rebuild(const X509_NAME* pName) noexcept
{
    PkiHandle<X509_NAME> name(X509_NAME_new());
    for (const PkiNameField& row : PkiName_Fields) {
        if (name == nullptr || !addFirst(name.get(), row.shortName, pName)) {
            return nullptr;
        }
    }
    return name;
}

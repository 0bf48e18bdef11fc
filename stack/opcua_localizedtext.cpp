#include "stack/opcua_localizedtext.h"

#include "platform/status.h"
#include "stack/opcua_recordpattern.h"

namespace {

OpcUa_StatusCode fillLocalizedText(const OpcUa_LocalizedText& source, OpcUa_LocalizedText& copy)
{
    const OpcUa_StatusCode status = OpcUa_String_CopyTo(&source.Locale, &copy.Locale);
    return OpcUa_IsBad(status) ? status : OpcUa_String_CopyTo(&source.Text, &copy.Text);
}

OpcUa_Int32 compareLocalizedTexts(const OpcUa_LocalizedText& left, const OpcUa_LocalizedText& right)
{
    const OpcUa_Int32 order = OpcUa_String_Compare(&left.Locale, &right.Locale);
    return order != 0 ? order : OpcUa_String_Compare(&left.Text, &right.Text);
}

} // namespace

void OpcUa_LocalizedText_Initialize(OpcUa_LocalizedText* text)
{
    if (text != nullptr) {
        *text = {};
    }
}

void OpcUa_LocalizedText_Clear(OpcUa_LocalizedText* text)
{
    if (text != nullptr) {
        OpcUa_String_Clear(&text->Locale);
        OpcUa_String_Clear(&text->Text);
    }
}

OpcUa_StatusCode OpcUa_LocalizedText_CopyTo(const OpcUa_LocalizedText* source,
                                            OpcUa_LocalizedText* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_LocalizedText_Initialize, OpcUa_LocalizedText_Clear>(
        source, destination, fillLocalizedText);
}

OpcUa_Int32 OpcUa_LocalizedText_Compare(const OpcUa_LocalizedText* left,
                                        const OpcUa_LocalizedText* right)
{
    return OpcUa_Record_Compare(left, right, compareLocalizedTexts);
}

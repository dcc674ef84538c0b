#include "dictionary/AdoSource.h"

#include <objbase.h>
#include <oleauto.h>

#include <utility>

// The header is older than our warnings.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#include <adoint.h>
#pragma GCC diagnostic pop

namespace melvorin {
namespace {

constexpr IID kConnectionId = {
    0x00000550, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
constexpr IID kRecordsetId = {
    0x00000556, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

void check(HRESULT code) {
    if (FAILED(code))
        throw AdoFailure{code};
}

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Object = std::unique_ptr<Interface, ReleaseObject>;

template <class Interface>
Object<Interface> createObject(const wchar_t* name, const IID& id) {
    CLSID classId{};
    check(::CLSIDFromProgID(name, &classId));
    void* object = nullptr;
    check(::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, id, &object));
    return Object<Interface>(static_cast<Interface*>(object));
}

struct FreeString {
    void operator()(BSTR text) const { ::SysFreeString(text); }
};
using String = std::unique_ptr<OLECHAR, FreeString>;

String stringOf(TextView text) {
    return String(::SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                      static_cast<UINT>(text.size())));
}

Text textOfString(BSTR text) {
    return text == nullptr ? Text()
                           : Text(reinterpret_cast<const char16_t*>(text), ::SysStringLen(text));
}

std::optional<Text> textOfValue(VARIANT& value) {
    if (value.vt == VT_NULL || value.vt == VT_EMPTY)
        return std::nullopt;
    check(::VariantChangeType(&value, &value, 0, VT_BSTR));
    return textOfString(value.bstrVal);
}

VARIANT numberValue(long number) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

class RecordsetCursor : public AdoCursor {
  public:
    explicit RecordsetCursor(_ADORecordset& records) : records_(records) {
        ADOFields* fields = nullptr;
        check(records.get_Fields(&fields));
        fields_.reset(fields);
    }
    long columns() override {
        long count = 0;
        check(fields_->get_Count(&count));
        return count;
    }
    Text name(long column) override {
        BSTR name = nullptr;
        check(field(column)->get_Name(&name));
        return textOfString(String(name).get());
    }
    VARIANT value(long column) override {
        VARIANT value{};
        check(field(column)->get_Value(&value));
        return value;
    }
    bool atEnd() override {
        VARIANT_BOOL end = VARIANT_TRUE;
        check(records_.get_EOF(&end));
        return end != VARIANT_FALSE;
    }
    void next() override { check(records_.MoveNext()); }

  private:
    Object<ADOField> field(long column) {
        ADOField* field = nullptr;
        check(fields_->get_Item(numberValue(column), &field));
        return Object<ADOField>(field);
    }

    _ADORecordset& records_;
    Object<ADOFields> fields_;
};

// What ADO says about its last failure, or what Windows says about the code.
Text sentenceFor(HRESULT code) {
    IErrorInfo* info = nullptr;
    if (::GetErrorInfo(0, &info) == S_OK && info != nullptr) {
        const Object<IErrorInfo> owner(info);
        BSTR description = nullptr;
        if (info->GetDescription(&description) == S_OK && description != nullptr)
            return textOfString(String(description).get());
    }
    Text message(512, u'\0');
    message.resize(::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                    nullptr, static_cast<DWORD>(code), 0, wideBuffer(message), 512,
                                    nullptr));
    const std::size_t end = message.find_last_not_of(u"\r\n ");
    message.resize(end == Text::npos ? 0 : end + 1);
    return message.empty() ? Text(u"Windows cannot read this kind of database.") : message;
}

}  // namespace

struct AdoSource::Connection {
    Object<_ADOConnection> object;
};

Table readTable(AdoCursor& cursor) {
    Table table;
    const long columns = cursor.columns();
    for (long column = 0; column < columns; ++column)
        table.fields.push_back(cursor.name(column));
    for (; !cursor.atEnd(); cursor.next()) {
        Row& row = table.rows.emplace_back();
        for (long column = 0; column < columns; ++column) {
            VARIANT value = cursor.value(column);
            const auto clear = [](VARIANT* taken) { ::VariantClear(taken); };
            const std::unique_ptr<VARIANT, decltype(clear)> guard(&value, clear);
            row.push_back(textOfValue(value));
        }
    }
    return table;
}

AdoSource::AdoSource() : ownsCom_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}

AdoSource::~AdoSource() {
    connection_.reset();
    if (ownsCom_)
        ::CoUninitialize();
}

Result<Done> AdoSource::open(TextView connection) {
    try {
        auto opened = std::make_unique<Connection>();
        opened->object = createObject<_ADOConnection>(L"ADODB.Connection", kConnectionId);
        check(opened->object->Open(stringOf(connection).get(), stringOf({}).get(),
                                   stringOf({}).get(), adConnectUnspecified));
        connection_ = std::move(opened);
        return done();
    } catch (const AdoFailure& failure) {
        return Failure{sentenceFor(failure.code)};
    }
}

Result<Table> AdoSource::read(TextView recordSource) {
    try {
        const auto records = createObject<_ADORecordset>(L"ADODB.Recordset", kRecordsetId);
        const String text = stringOf(recordSource);
        VARIANT source{};
        source.vt = VT_BSTR;
        source.bstrVal = text.get();
        VARIANT connection{};
        connection.vt = VT_DISPATCH;
        connection.pdispVal = connection_->object.get();
        check(records->Open(source, connection, adOpenForwardOnly, adLockReadOnly, adCmdText));
        RecordsetCursor cursor(*records);
        return Result<Table>::success(readTable(cursor));
    } catch (const AdoFailure& failure) {
        return Failure{sentenceFor(failure.code)};
    }
}

}  // namespace melvorin

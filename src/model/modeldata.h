// ModelData, the text form of a block's linear model, and the change events of the model editors' icons.
#ifndef MODEL_MODELDATA_H
#define MODEL_MODELDATA_H

#include "quill/lookupky.h"
#include "quill/quillstr.h"
#include "quill/symbol.h"

extern Class class_ModelData;

// Raised on an icon: before and after an edit of the title, and when a change asks for a new analysis.
extern Symbol IconChanging;
extern Symbol IconChanged;
extern Symbol AskAnalyse;

// The key is the model's name, a String it owns. The matrices stay texts, so
// that a drawing is stored and edited without the numeric types.
class ModelData : public LookupKey {
    DECLARE_MEMBERS(ModelData)
public:
    explicit ModelData(const char* name = "");
    ModelData(const ModelData& other);
    ModelData& operator=(const ModelData& other);
    // Stream form: the key, then the texts of A, B, C, D and of the initial state.
    ModelData(std::istream& is, Object* where);
    ModelData(BinIstream& is, Object* where);
    ~ModelData() noexcept(false) override;

    const String& name() const { return *static_cast<const String*>(key_); }
    void setName(const char* name) { *static_cast<String*>(key_) = name; }

    String aText, bText, cText, dText, x0Text;
    int changed = 0;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    // The key is the destructor's to delete: a deep delete leaves it.
    void deepDeleteContents() override {}

private:
    template <class Stream>
    void readTexts(Stream& is);
};

#endif

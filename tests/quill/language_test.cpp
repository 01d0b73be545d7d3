// Tests of Language: the file search, loading, bad lines, defaults and the current language.
#include "quill/language.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "quill/all.h"
#include "quill/cback.h"
#include "testutil.h"

namespace {

std::vector<std::string> reports;

int recordReport(int, const char* message) {
    reports.push_back(message);
    return 1;
}

// Each test gets empty temporary directories, no language variables and a report recorder.
class LanguageTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_langXXXXXX";
        root = mkdtemp(pattern);
        for (const char* name : {"TARN_LANG", "TARN_LANG_PATH", "TARN_PATH"}) {
            const char* value = std::getenv(name);
            saved.push_back({name, value ? value : "", value != 0});
            unsetenv(name);
        }
        savedHook = errorReportHook;
        errorReportHook = recordReport;
        reports.clear();
        Language::setProgramDirectory("");
    }

    void TearDown() override {
        errorReportHook = savedHook;
        Language::setProgramDirectory("");
        Language::clearCurrent();
        for (const Saved& s : saved) {
            if (s.set)
                setenv(s.name.c_str(), s.value.c_str(), 1);
            else
                unsetenv(s.name.c_str());
        }
        std::string command = "rm -rf '" + root + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
    }

    // Writes text into root/relative, making its directory; answers the path.
    std::string write(const std::string& relative, const std::string& text) {
        std::string path = root + "/" + relative;
        std::string directory = path.substr(0, path.rfind('/'));
        std::string command = "mkdir -p '" + directory + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::ofstream(path) << text;
        return path;
    }

    struct Saved {
        std::string name, value;
        bool set;
    };
    std::string root;
    std::vector<Saved> saved;
    ErrorReportHook savedHook = 0;
};

}  // namespace

// The first place that holds the file wins: TARN_LANG_PATH, TARN_PATH/bin, the program's directory.
TEST_F(LanguageTest, SearchOrderPicksFirstPlaceHoldingTheFile) {
    struct Row {
        const char* name;
        std::vector<std::string> places;  // "lang", "tarn", "program"
        const char* expected;             // the place whose copy is read, or ""
    };
    const std::vector<Row> rows = {
        {"program directory only", {"program"}, "program"},
        {"TARN_PATH bin before program", {"tarn", "program"}, "tarn"},
        {"TARN_LANG_PATH before TARN_PATH", {"lang", "tarn", "program"}, "lang"},
        {"TARN_LANG_PATH alone", {"lang"}, "lang"},
        {"nowhere", {}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::string dir = root + "/" + row.name;
        setenv("TARN_LANG_PATH", (dir + "/lang/").c_str(), 1);
        setenv("TARN_PATH", (dir + "/tarn").c_str(), 1);
        Language::setProgramDirectory((dir + "/program").c_str());
        // TARN_PATH itself, without "/bin", is not searched.
        write(std::string(row.name) + "/tarn/t_english.lng", "where = tarn root\n");
        const char* subdir[] = {"lang", "tarn/bin", "program"};
        const char* place[] = {"lang", "tarn", "program"};
        for (const std::string& p : row.places)
            for (int i = 0; i < 3; ++i)
                if (p == place[i])
                    write(std::string(row.name) + "/" + subdir[i] + "/t_english.lng", "where = " + p);

        Language lang("english");
        int loaded = lang.load("t_");
        EXPECT_EQ(loaded, *row.expected ? 1 : 0);
        EXPECT_STREQ(lang.text("where"), *row.expected ? row.expected : "where");
    }
    EXPECT_TRUE(reports.empty());
}

// The file's name joins the base, kept as given, and the language in lower
// case; a name as it stands comes before the search.
TEST_F(LanguageTest, FileNameAndNameAsItStands) {
    Language lang("English");
    EXPECT_STREQ(lang.name().name().asCharPointer(), "english");
    EXPECT_STREQ(lang.fileName("Design_").asCharPointer(), "Design_english.lng");

    std::string path = write("direct/x_english.lng", "k = direct\n");
    write("bin/x_english.lng", "k = tarn\n");
    setenv("TARN_PATH", root.c_str(), 1);
    EXPECT_STREQ(Language::findFile(path.c_str()).asCharPointer(), path.c_str());
    EXPECT_STREQ(Language::findFile("x_english.lng").asCharPointer(), (root + "/bin/x_english.lng").c_str());
    EXPECT_STREQ(Language::findFile("").asCharPointer(), "");
    EXPECT_STREQ(Language::findFile("nothere_english.lng").asCharPointer(), "");
}

TEST_F(LanguageTest, LoadReadsEntriesCommentsQuotesAndEscapes) {
    write("panel_italian.lng",
          "# comment line\n"
          "\n"
          "   \t\n"
          "Quit = Esci\n"
          "  File to edit   =   File da editare  \r\n"
          "\"Work Directory > \" = \"Cartella di lavoro > \"\n"
          "Some editor is open\\nContinue ? = Editor aperto\\nContinuare ?\n"
          "a \\= b = uguale\n"
          "Say \\\"hi\\\" = \"Di' \\\"ciao\\\"\"\n"
          "Tab = a\\tb\\\\c\n");
    setenv("TARN_LANG_PATH", root.c_str(), 1);
    Language lang("italian");
    EXPECT_EQ(lang.load("panel_"), 7);
    EXPECT_EQ(lang.state(), Language::ITALIAN);
    struct Row {
        const char* key;
        const char* text;
    };
    const Row rows[] = {
        {"Quit", "Esci"},
        {"File to edit", "File da editare"},
        {"Work Directory > ", "Cartella di lavoro > "},
        {"Some editor is open\nContinue ?", "Editor aperto\nContinuare ?"},
        {"a = b", "uguale"},
        {"Say \"hi\"", "Di' \"ciao\""},
        {"Tab", "a\tb\\c"},
        {"Not in the table", "Not in the table"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        EXPECT_STREQ(lang.text(row.key), row.text);
    }
    EXPECT_TRUE(reports.empty());
}

// Bad lines are reported with the file's name and the line's number, skipped,
// and the lines after them still load; a repeated key keeps its first text.
TEST_F(LanguageTest, BadLinesAreReportedAndSkipped) {
    std::string path = write("m_english.lng",
                             "good = one\n"
                             "= no key\n"
                             "\"\" = quoted empty key\n"
                             "no value\n"
                             "no value either =   \n"
                             "good = two\n"
                             "quoted empty = \"\"\n"
                             "last = three\n");
    Language::setProgramDirectory(root.c_str());
    Language lang("English");
    EXPECT_EQ(lang.load("m_"), 2);
    EXPECT_STREQ(lang.text("good"), "one");
    EXPECT_STREQ(lang.text("last"), "three");
    const std::vector<std::string> expected = {
        "Invalid empty key in file " + path + " at line 2",
        "Invalid empty key in file " + path + " at line 3",
        "Invalid empty value in file " + path + " at line 4",
        "Invalid empty value in file " + path + " at line 5",
        "Key of file " + path + " at line 6 already present in language english",
        "Invalid empty value in file " + path + " at line 7",
    };
    EXPECT_EQ(reports, expected);
}

TEST_F(LanguageTest, AddKeyReportsShortForms) {
    Language lang("english");
    EXPECT_TRUE(lang.addKey("alpha", "first"));
    EXPECT_FALSE(lang.addKey("", "x"));
    EXPECT_FALSE(lang.addKey(0, "x"));
    EXPECT_FALSE(lang.addKey("beta", ""));
    EXPECT_FALSE(lang.addKey("alpha", "second"));
    EXPECT_EQ(lang.size(), 1u);
    EXPECT_STREQ(lang.text("alpha"), "first");
    const std::vector<std::string> expected = {"Invalid empty key", "Invalid empty key",
                                               "Invalid empty value", "Key already present alpha"};
    EXPECT_EQ(reports, expected);
}

TEST_F(LanguageTest, DefaultsStandForThemselvesAndFlushEmpties) {
    static const char* const texts[] = {"Tarn Panel", "File to edit", "", "Tarn Panel", 0};
    Language lang("english");
    EXPECT_TRUE(lang.addKey("File to edit", "Edit which file"));
    EXPECT_EQ(lang.loadDefaults(texts), 1);  // the present key and the empty one are left
    EXPECT_STREQ(lang.text("Tarn Panel"), "Tarn Panel");
    EXPECT_STREQ(lang.text("File to edit"), "Edit which file");
    EXPECT_EQ(lang.stateName(), languageEnglish);
    EXPECT_TRUE(reports.empty());

    static int sizeHeard;
    sizeHeard = -1;
    lang.addCback(Flushed, [](Cback& cb) { sizeHeard = static_cast<int>(cb.owner->size()); });
    lang.flush();
    EXPECT_EQ(sizeHeard, 0);  // listeners hear of it with the table already empty
    EXPECT_EQ(lang.size(), 0u);
    EXPECT_EQ(lang.stateName(), languageNotInit);
    EXPECT_STREQ(lang.text("File to edit"), "File to edit");
    EXPECT_TRUE(lang.addKey("File to edit", "again"));  // a flushed table fills anew
}

TEST_F(LanguageTest, CurrentLanguageNameFromTableOrEnvironment) {
    EXPECT_STREQ(currentLanguageName(0).asCharPointer(), "english");
    setenv("TARN_LANG", "", 1);
    EXPECT_STREQ(currentLanguageName(1).asCharPointer(), "english");
    setenv("TARN_LANG", "Italian", 1);
    EXPECT_STREQ(currentLanguageName(0).asCharPointer(), "Italian");
    EXPECT_STREQ(currentLanguageName(1).asCharPointer(), "italian");
    EXPECT_STREQ(Language().name().name().asCharPointer(), "italian");
    EXPECT_NE(raisedText([] { currentLanguageName(2); }).find("index == 0 || index == 1"), std::string::npos);

    Language* lang = new Language("english");
    lang->addKey("Tarn Panel", "Pannello");
    Language::setCurrent(lang);
    EXPECT_EQ(Language::current(), lang);
    EXPECT_STREQ(currentLanguageName(1).asCharPointer(), "english");  // the table wins
    EXPECT_STREQ(languageText("Tarn Panel"), "Pannello");
    EXPECT_STREQ(languageText("Other"), "Other");
}

TEST_F(LanguageTest, OneCurrentLanguageAtATime) {
    Language* first = new Language("english");
    Language::setCurrent(first);
    Language second("italian");
    EXPECT_NE(
        raisedText([&] { Language::setCurrent(&second); }).find("Assertion failed \"currentLanguage == 0\""),
        std::string::npos);
    EXPECT_EQ(Language::current(), first);
    Language::clearCurrent();
    EXPECT_EQ(Language::current(), nullptr);
    EXPECT_STREQ(languageText("Tarn Panel"), "Tarn Panel");

    Language* third = new Language("english");
    Language::setCurrent(third);
    delete third;
    EXPECT_EQ(Language::current(), nullptr);
}

#include "Support/ScratchFolder.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Desktop/FolderPicker.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

using Folder = std::optional<std::filesystem::path>;

class FolderPickerTest : public testing::Test {
protected:
    FolderPickerTest()
    {
        std::filesystem::create_directory(home());
        writeFile(m_folder.path() / "a file", "");
    }

    [[nodiscard]] std::filesystem::path home() const
    {
        return m_folder.path() / "home \xC3\xA4";
    }
    [[nodiscard]] HomeFolderPicker::Request request() const
    {
        return {.startFolder = home(), .message = "Why we ask: \xC3\xA4"};
    }
    [[nodiscard]] HomeFolderPicker::Completion keepIn(std::vector<Folder>& answers) const
    {
        return [&answers](const Folder& folder) { answers.push_back(folder); };
    }

    static std::vector<QFileDialog*> openDialogs()
    {
        std::vector<QFileDialog*> dialogs;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* const dialog = qobject_cast<QFileDialog*>(window);
            if (dialog && dialog->isVisible())
                dialogs.push_back(dialog);
        }
        return dialogs;
    }

    static QFileDialog* openDialog()
    {
        const auto dialogs = openDialogs();
        EXPECT_EQ(dialogs.size(), 1U);
        return dialogs.empty() ? nullptr : dialogs.front();
    }

    static void choose(QFileDialog& dialog, const std::filesystem::path& folder)
    {
        dialog.setDirectory(QFile::decodeName(folder.c_str()));
        static_cast<QDialog&>(dialog).accept();
    }

    ScratchFolder m_folder;
};

TEST_F(FolderPickerTest, dialogIsNotModalAndShowsTheMessageAndTheStartFolder)
{
    std::vector<Folder> answers; // outlives the picker, whose destructor answers
    FolderPicker picker;
    picker.begin(request(), keepIn(answers));
    const QFileDialog* const dialog = openDialog();
    ASSERT_TRUE(dialog);
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral(u"Why we ask: \u00e4"));
    EXPECT_EQ(dialog->directory().absolutePath(), QFile::decodeName(home().c_str()));
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(dialog->testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_TRUE(answers.empty());
}

TEST_F(FolderPickerTest, chosenFolderIsReportedOnce)
{
    std::vector<Folder> answers; // outlives the picker, whose destructor answers
    FolderPicker picker;
    picker.begin(request(), keepIn(answers));
    ASSERT_TRUE(openDialog());
    choose(*openDialog(), home());
    spinUntil([&] { return !answers.empty(); });
    EXPECT_EQ(answers, std::vector<Folder>{home()});
    EXPECT_TRUE(openDialogs().empty());
}

TEST_F(FolderPickerTest, closedDialogReportsNoFolderOnce)
{
    for (const auto& end : std::vector<std::function<void(QFileDialog&)>>{[](QFileDialog& dialog) { dialog.reject(); },
                                                                          [](QFileDialog& dialog) { dialog.close(); }})
    {
        FolderPicker picker;
        std::vector<Folder> answers;
        picker.begin(request(), keepIn(answers));
        ASSERT_TRUE(openDialog());
        end(*openDialog());
        spinUntil([&] { return !answers.empty(); });
        spinFor(std::chrono::milliseconds{20});
        EXPECT_EQ(answers, std::vector<Folder>{std::nullopt});
    }
}

TEST_F(FolderPickerTest, secondRequestRaisesTheDialogAndGetsNoFolder)
{
    FolderPicker picker;
    std::vector<Folder> first;
    std::vector<Folder> second;
    picker.begin(request(), keepIn(first));
    const QFileDialog* const dialog = openDialog();
    picker.begin(request(), keepIn(second));
    ASSERT_EQ(openDialog(), dialog);
    choose(*openDialog(), home());
    spinUntil([&] { return !second.empty(); });
    EXPECT_EQ(first, std::vector<Folder>{home()});
    EXPECT_EQ(second, std::vector<Folder>{std::nullopt});
}

TEST_F(FolderPickerTest, destroyedPickerClosesTheDialogAndReportsNoFolder)
{
    std::vector<Folder> answers;
    {
        FolderPicker picker;
        picker.begin(request(), keepIn(answers));
        ASSERT_TRUE(openDialog());
    }
    EXPECT_TRUE(openDialogs().empty());
    spinFor(std::chrono::milliseconds{20});
    EXPECT_EQ(answers, std::vector<Folder>{std::nullopt});
}

TEST_F(FolderPickerTest, pickerDestroyedAfterTheChoiceReportsOnce)
{
    std::vector<Folder> answers;
    {
        FolderPicker picker;
        picker.begin(request(), keepIn(answers));
        ASSERT_TRUE(openDialog());
        choose(*openDialog(), home());
    }
    spinFor(std::chrono::milliseconds{20});
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(FolderPickerTest, completionMayBeginAnotherRequest)
{
    std::vector<Folder> answers; // outlives the picker, whose destructor answers
    FolderPicker picker;
    picker.begin(request(), [&](const Folder& folder) {
        answers.push_back(folder);
        picker.begin(request(), keepIn(answers));
    });
    ASSERT_TRUE(openDialog());
    openDialog()->reject();
    spinUntil([&] { return !answers.empty(); });
    ASSERT_TRUE(openDialog());
    choose(*openDialog(), home());
    spinUntil([&] { return answers.size() == 2; });
    EXPECT_EQ(answers, (std::vector<Folder>{std::nullopt, home()}));
}

TEST_F(FolderPickerTest, signalComesBeforeTheDialogIsShownOrRaised)
{
    FolderPicker picker;
    std::vector<std::size_t> dialogsAtTheSignal;
    QObject::connect(&picker, &FolderPicker::aboutToOpen, &picker,
                     [&] { dialogsAtTheSignal.push_back(openDialogs().size()); });
    picker.begin(request(), [](const Folder&) {});
    picker.begin(request(), [](const Folder&) {});
    EXPECT_EQ(dialogsAtTheSignal, (std::vector<std::size_t>{0, 1}));
}

} // namespace
} // namespace tallyfox::test

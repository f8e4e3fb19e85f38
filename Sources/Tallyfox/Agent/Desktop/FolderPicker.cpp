#include "Tallyfox/Agent/Desktop/FolderPicker.h"

#include "Tallyfox/Agent/Theme/Translations.h"

#include <QFile>
#include <QFileDialog>

#include <utility>

namespace tallyfox {

namespace {

std::filesystem::path toPath(const QString& file)
{
    return QFile::encodeName(file).toStdString();
}

} // namespace

FolderPicker::FolderPicker() = default;

FolderPicker::~FolderPicker()
{
    m_dialog.reset();
    for (const Completion& completion : std::exchange(m_completions, {}))
        completion(std::nullopt);
}

void FolderPicker::begin(const Request& request, Completion completion)
{
    const bool isOpen = !m_completions.empty();
    m_completions.push_back(std::move(completion));
    Q_EMIT aboutToOpen();
    if (!isOpen)
        open(request);
    m_dialog->raise();
    m_dialog->activateWindow();
}

void FolderPicker::open(const Request& request)
{
    const QString message = translatedText(request.message);
    const QString folder = QFile::decodeName(request.startFolder.c_str());
    m_dialog = std::make_unique<QFileDialog>(nullptr, message, folder);
    m_dialog->setFileMode(QFileDialog::Directory);
    m_dialog->setOption(QFileDialog::ShowDirsOnly);
    // Queued: the dialog is still emitting this signal, and a completion may open the next one.
    connect(m_dialog.get(), &QFileDialog::finished, this, &FolderPicker::finish, Qt::QueuedConnection);
    m_dialog->setModal(false);
    m_dialog->show();
}

void FolderPicker::finish(int result)
{
    const QStringList chosen = result == QDialog::Accepted ? m_dialog->selectedFiles() : QStringList{};
    const auto folder = chosen.isEmpty() ? std::nullopt : std::optional{toPath(chosen.front())};
    m_dialog.reset();
    const auto completions = std::exchange(m_completions, {}); // one of them may begin another request
    for (std::size_t index = 0; index < completions.size(); ++index)
        completions[index](index == 0 ? folder : std::nullopt);
}

} // namespace tallyfox

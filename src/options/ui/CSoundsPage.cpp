#include "CSoundsPage.h"

#include "options/SoundPlayer.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

// Where the desktop keeps its own sounds.
constexpr char kSystemSounds[] = "/usr/share/sounds";

struct Event {
    const char* label;
    TextKey key;
};

} // namespace

CSoundsPage::CSoundsPage(SoundPlayer& player, QWidget* parent)
    : COptionsPage(OptionPageKind::Sounds, QStringLiteral("options-sounds"), parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    const Event events[] = { { QT_TR_NOOP("C&onnection Established:"), sounds::kConnectOkPage },
        { QT_TR_NOOP("Connection F&ailed:"), sounds::kConnectFailPage },
        { QT_TR_NOOP("Transfer &done:"), sounds::kTransferOkPage },
        { QT_TR_NOOP("Transfer Fa&iled:"), sounds::kTransferFailPage } };
    std::vector<QLineEdit*> edits;
    int row = 0;
    for (const Event& event : events) {
        auto* label = new QLabel(tr(event.label));
        auto* edit = new QLineEdit;
        label->setBuddy(edit);
        auto* browse = new QPushButton(tr("Browse..."));
        auto* test = new QPushButton(tr("Test"));
        const QString name = label->text().remove(u'&').remove(u':');
        browse->setAccessibleName(tr("Browse for %1").arg(name));
        test->setAccessibleName(tr("Test %1").arg(name));
        grid->addWidget(label, row, 0);
        grid->addWidget(edit, row, 1);
        grid->addWidget(browse, row, 2);
        grid->addWidget(test, row, 3);
        ++row;
        edits.push_back(edit);
        const char* key = event.key.name;
        bindCustom(
            key,
            [edit](const QString& value) {
                edit->setText(
                    value == QLatin1StringView(sounds::kPageSentinel) ? QString() : value);
            },
            [edit] { return edit->text(); });
        watch(edit);
        connect(browse, &QPushButton::clicked, this, [this, edit] {
            const QString path = QFileDialog::getOpenFileName(this, tr("Choose a Sound"),
                QString::fromLatin1(kSystemSounds), tr("WAV Files (*.wav)"));
            if (path.isEmpty())
                return;
            edit->setText(path);
            markModified();
        });
        connect(test, &QPushButton::clicked, this, [&player, edit] {
            if (!edit->text().isEmpty())
                player.playFile(edit->text());
        });
    }
    layout->addLayout(grid);

    auto* clear = new QPushButton(tr("&Clear"));
    clear->setToolTip(tr("Empties the four sound files: no sounds"));
    connect(clear, &QPushButton::clicked, this, [this, edits] {
        for (QLineEdit* edit : edits)
            edit->clear();
        markModified();
    });
    auto* clearRow = new QHBoxLayout;
    clearRow->addStretch();
    clearRow->addWidget(clear);
    layout->addLayout(clearRow);

    auto* per = new QGroupBox(tr("Transfer sounds per"));
    auto* perLayout = new QHBoxLayout(per);
    auto* file = new QRadioButton(tr("&File"));
    auto* batch = new QRadioButton(tr("&Batch of files"));
    perLayout->addWidget(file);
    perLayout->addWidget(batch);
    bindChoice({ file, batch }, { QStringLiteral("FILE"), QString::fromLatin1(sounds::kBatch) },
        sounds::kTransferType.name);
    layout->addWidget(per);
    layout->addStretch();
}

} // namespace zelto

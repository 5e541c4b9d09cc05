// SPDX-License-Identifier: MIT
#include "app/fileopenersheet.h"

#include "base/text.h"
#include "base/visibletext.h"
#include "macros/macrorecord.h"
#include "platform/boldtext.h"
#include "platform/sheet.h"
#include "platform/spacing.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int sheetWidth = 480;
constexpr qsizetype mostLines = 6; ///< of a list, without scrolling

QLabel *addLabel(QVBoxLayout *layout, const char *objectName, const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QLatin1StringView(objectName));
    label->setTextFormat(Qt::PlainText); // the file chooses it
    label->setWordWrap(true);
    layout->addWidget(label);
    return label;
}

/// Breaks lines anywhere and scrolls: the file chooses the texts, and all of them must be seen.
void addLines(QVBoxLayout *layout, const char *objectName, const QStringList &texts, const QString &accessibleName)
{
    auto *list = new QPlainTextEdit(texts.join(u'\n'));
    list->setObjectName(QLatin1StringView(objectName));
    list->setAccessibleName(accessibleName);
    list->setReadOnly(true);
    list->setTabChangesFocus(true);
    list->setWordWrapMode(QTextOption::WrapAnywhere);
    const qsizetype height = std::min(texts.size() + 1, mostLines) * list->fontMetrics().lineSpacing();
    list->setFixedHeight(int(height) + 2 * (qCeil(list->document()->documentMargin()) + list->frameWidth()));
    layout->addWidget(list);
}

void describeProfile(QVBoxLayout *layout, const QVariantMap &profile)
{
    const ProfileContent content = ProfileContent::of(profile);
    if (content.application.isEmpty()) {
        addLabel(layout, "mFileNoApplication", localizedText("lkeyFileNoApplication"));
    } else {
        const QLabel *title = addLabel(layout, "mFileApplicationTitle", localizedText("lkeyFileApplication"));
        addLines(layout, "mFileApplication", content.application, title->text());
    }
    addLabel(layout, "mFileMacros", localizedFormat("lkeyFileMacros", {QString::number(content.macros)}));
    if (content.programs.isEmpty()) {
        addLabel(layout, "mFileNoPrograms", localizedText("lkeyFileNoPrograms"));
        return;
    }
    const QLabel *title = addLabel(layout, "mFileProgramsTitle", localizedText("lkeyFilePrograms"));
    addLines(layout, "mFilePrograms", content.programs, title->text());
}

} // namespace

Sheet *makeFileQuestion(const OpenedFile &file, const QString &name, QWidget *window)
{
    const bool isProfile = file.kind == OpenedFile::Kind::profile;
    auto *sheet = new Sheet(window);
    sheet->setObjectName("mFileQuestion"_L1);
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    layout->setSpacing(Spacing::normal);
    QLabel *title =
        addLabel(layout, "mFileTitle",
                 localizedFormat(isProfile ? "lkeyFileAddProfile" : "lkeyFileAddMacro", {nameInAlert(name)}));
    makeBold(title);
    sheet->setWindowTitle(title->text());
    const QString path = visibleText(QDir::toNativeSeparators(file.path), QChar::ReplacementCharacter);
    addLines(layout, "mFilePath", {path}, localizedText("lkeyFilePath"));
    if (isProfile)
        describeProfile(layout, file.record);
    else
        addLabel(layout, "mFileEvents",
                 localizedFormat("lkeyFileEvents", {QString::number(MacroRecord::events(file.record).size())}));
    if (isProfile)
        addLabel(layout, "mFileStays", localizedText("lkeyFileStays"));

    auto *add = new QPushButton(localizedText("lkeyFileAdd"));
    add->setObjectName("mFileAdd"_L1);
    add->setAutoDefault(false);
    auto *cancel = new QPushButton(localizedText("lkeyCancel"));
    cancel->setObjectName("mFileCancel"_L1);
    cancel->setDefault(true);
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(add, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    layout->addWidget(buttons);
    QObject::connect(add, &QPushButton::clicked, sheet, [sheet] { sheet->endSheet(alertFirstButtonReturn); });
    QObject::connect(cancel, &QPushButton::clicked, sheet, [sheet] { sheet->endSheet(alertSecondButtonReturn); });
    sheet->setCancelButton(cancel);
    sheet->setMinimumWidth(sheetWidth);
    cancel->setFocus();
    return sheet;
}

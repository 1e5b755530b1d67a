#include "canvas/session.h"

#include "canvas/editor.h"

#include <QRandomGenerator>
#include <QStringList>

namespace session {

namespace {

/// Positions reach this far beyond the picture.
constexpr int Beyond = 6;
constexpr int Width = 60;
constexpr int Height = 44;

/// A part of all numbers, as a share of `of`.
bool chance(QRandomGenerator &random, int share, int of) {
    return random.bounded(of) < share;
}

void addPosition(QRandomGenerator &random, QVector<int> *numbers) {
    *numbers << random.bounded(-Beyond, Width + Beyond) << random.bounded(-Beyond, Height + Beyond);
}

QVector<int> positions(QRandomGenerator &random, int count) {
    QVector<int> numbers;
    for (int i = 0; i < count; ++i)
        addPosition(random, &numbers);
    return numbers;
}

int tool(QRandomGenerator &random) {
    // The mosaic waits for a thread of its own, so it has its turn less often.
    if (chance(random, 1, 12))
        return Editor::Mosaic;
    return random.bounded(int(Editor::Eraser), int(Editor::SpeechBalloon) + 1);
}

Step setting(QRandomGenerator &random) {
    const auto color = [&] {
        // Opaque as often as not.
        const quint32 alpha = chance(random, 1, 2) ? 0xff000000 : random.generate() & 0xff000000;
        return static_cast<int>(alpha | (random.generate() & 0xffffff));
    };
    switch (random.bounded(5)) {
    case 0:
        return {QStringLiteral("width"), {random.bounded(1, 13)}};
    case 1:
        return {QStringLiteral("style"), {chance(random, 1, 3) ? 3 : 1}};
    case 2:
        return {QStringLiteral("line"), {color()}};
    case 3:
        return {QStringLiteral("fill"), {color()}};
    default:
        return {QStringLiteral("mosaic"), {QVector<int>{4, 6, 9}.at(random.bounded(3))}};
    }
}

Step drag(QRandomGenerator &random) {
    QVector<int> numbers{chance(random, 1, 4)};
    // A click now and then.
    numbers += positions(random, chance(random, 1, 8) ? 1 : random.bounded(2, 6));
    return {QStringLiteral("drag"), numbers};
}

Step partOfDrag(QRandomGenerator &random) {
    switch (random.bounded(3)) {
    case 0:
        return {QStringLiteral("press"), positions(random, 1)};
    case 1:
        return {QStringLiteral("move"), QVector<int>{chance(random, 1, 4)} + positions(random, 1)};
    default:
        return {QStringLiteral("release"), QVector<int>{chance(random, 1, 4)} + positions(random, 1)};
    }
}

Step crop(QRandomGenerator &random) {
    const int x = random.bounded(Width - 10), y = random.bounded(Height - 10);
    return {QStringLiteral("crop"),
            {chance(random, 3, 4), x, y, random.bounded(5, Width - x), random.bounded(5, Height - y)}};
}

Step text(QRandomGenerator &random) {
    QVector<int> numbers{random.bounded(int(Discarded), int(ClickElsewhere) + 1)};
    addPosition(random, &numbers);
    return {QStringLiteral("text"), numbers << random.bounded(6)};
}

Step step(QRandomGenerator &random, int captures) {
    const int dice = random.bounded(100);
    if (dice < 36)
        return drag(random);
    if (dice < 48)
        return {QStringLiteral("tool"), {tool(random)}};
    if (dice < 56)
        return setting(random);
    if (dice < 66)
        return partOfDrag(random);
    if (dice < 74)
        return {QStringLiteral("undo"), {}};
    if (dice < 82)
        return {QStringLiteral("redo"), {}};
    if (dice < 84)
        return {QStringLiteral("reset"), {}};
    if (dice < 90)
        return {QStringLiteral("zoom"), {chance(random, 2, 3) ? 0 : random.bounded(-6, 7)}};
    if (dice < 94)
        return crop(random);
    if (dice < 96)
        return text(random);
    return {QStringLiteral("select"), {random.bounded(captures)}};
}

} // namespace

Script random(QRandomGenerator &random, int steps, int captures) {
    Script script;
    for (int i = 0; i < steps; ++i)
        script.append(step(random, captures));
    return script;
}

QString write(const Script &script) {
    QStringList lines;
    for (const Step &step : script) {
        QStringList words{step.verb};
        for (const int number : step.numbers)
            words.append(QString::number(number));
        lines.append(words.join(QLatin1Char(' ')));
    }
    return lines.join(QStringLiteral("; "));
}

Script read(const QString &text) {
    Script script;
    for (const QString &line : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.isEmpty())
            continue;
        Step step{words.takeFirst(), {}};
        for (const QString &word : qAsConst(words))
            step.numbers.append(word.toInt());
        script.append(step);
    }
    return script;
}

} // namespace session

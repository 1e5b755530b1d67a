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

Step zoom(QRandomGenerator &random) {
    return {QStringLiteral("zoom"), {chance(random, 2, 3) ? 0 : random.bounded(-6, 7)}};
}

/// Smaller than the picture, so that it scrolls, or back to its size.
Step view(QRandomGenerator &random) {
    if (chance(random, 1, 2))
        return {QStringLiteral("view"), {0, 0}};
    return {QStringLiteral("view"), {random.bounded(20, Width), random.bounded(15, Height)}};
}

/// What can happen while a text or a frame is open, most of which leaves it open.
Step meanwhile(QRandomGenerator &random, bool isText) {
    switch (random.bounded(7)) {
    case 0:
        return zoom(random);
    case 1:
        return view(random);
    case 2:
        return setting(random);
    case 3:
        return {chance(random, 1, 2) ? QStringLiteral("undo") : QStringLiteral("redo"), {}};
    case 4:
        return partOfDrag(random);
    default:
        return isText ? Step{QStringLiteral("write"), {random.bounded(-3, 4)}} : drag(random);
    }
}

Script openForAWhile(QRandomGenerator &random) {
    const bool isText = chance(random, 1, 2);
    QVector<int> numbers = positions(random, 1);
    if (isText)
        numbers << random.bounded(4);
    else
        numbers = crop(random).numbers.mid(1);
    Script script{{isText ? QStringLiteral("open") : QStringLiteral("frame"), numbers}};
    for (int i = random.bounded(1, 5); i > 0; --i)
        script.append(meanwhile(random, isText));
    // Else it stays open for whatever comes.
    if (chance(random, 3, 4))
        script.append({QStringLiteral("close"), {chance(random, 1, 2)}});
    return script;
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
        return zoom(random);
    if (dice < 94)
        return crop(random);
    if (dice < 96)
        return text(random);
    return {QStringLiteral("select"), {random.bounded(captures)}};
}

} // namespace

Script random(QRandomGenerator &random, int steps, int captures) {
    Script script;
    while (script.size() < steps) {
        if (chance(random, 1, 25))
            script += openForAWhile(random);
        else if (chance(random, 1, 40))
            script.append(view(random));
        else
            script.append(step(random, captures));
    }
    script.resize(steps);
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

#pragma once
#include <QObject>
#include <QTimer>

// A timer that is off until armed with setMode(1); then it fires Action once, Period
// milliseconds later, on the main thread, and goes off again. Arming a pending timer
// leaves one firing.
class OneShotTimer : public QObject {
    Q_OBJECT
public:
    explicit OneShotTimer(QObject* parent = nullptr);
    int Period() const;
    void setPeriod(int milliseconds);
    int Mode() const;      // 0 off, 1 armed
    void setMode(int mode);
signals:
    void Action();
private:
    QTimer timer_;
};

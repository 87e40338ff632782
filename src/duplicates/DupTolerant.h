#pragma once
// The tolerant mode of the duplicate search's store work (reading items,
// writing the ID field, the removal loop): a store call that fails does not
// stop the sequence. Its target keeps what it held, the next step runs, and
// the latest failure stays pending until the code tests and clears it.

#include "store/StoreError.h"

#include <QString>

class Tolerant
{
public:
    // Runs one step; a StoreError becomes the pending failure. Returns
    // whether the step succeeded.
    template <typename Step>
    bool run(Step &&step)
    {
        try {
            step();
            return true;
        } catch (const StoreError &error) {
            m_pending = true;
            m_number = error.number();
            m_description = error.description();
            return false;
        }
    }

    [[nodiscard]] bool pending() const { return m_pending; }
    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] const QString &description() const { return m_description; }
    void clear()
    {
        m_pending = false;
        m_number = 0;
        m_description.clear();
    }

private:
    bool m_pending = false;
    int m_number = 0;
    QString m_description;
};

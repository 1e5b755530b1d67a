#pragma once

/// What a picture of its scene can be made without, for a moment.
class Omittable {
public:
    /// Paints nothing meanwhile: for a picture of what lies below and above.
    void setOmitted(bool omitted) { m_omitted = omitted; }

protected:
    ~Omittable() = default;
    bool isOmitted() const { return m_omitted; }

private:
    bool m_omitted = false;
};

#pragma once

/// Lets a `unique_ptr` own what a C library made: `std::unique_ptr<BIO, Freer<BIO_free_all>>`.
template <auto Free> struct Freer {
    template <typename Object> void operator()(Object *object) const { Free(object); }
};

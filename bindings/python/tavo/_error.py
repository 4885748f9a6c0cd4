"""The error of the library."""


class TavoError(RuntimeError):
    """An error of the library. `code` is its number, `name` the number's name."""

    def __init__(self, code: int, name: str, text: str) -> None:
        super().__init__(code, name, text)
        self.code, self.name, self.text = code, name, text

    def __str__(self) -> str:
        return f"{self.text or self.name} ({self.code})"

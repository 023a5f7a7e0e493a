"""A system in a folder, of which nothing stays."""

import pathlib
import unittest

from packaged import folder_of

from clean_root import CleanRoot, Failed


class CleanRootTest(unittest.TestCase):
    def root(self, image):
        """One that is made from these bytes."""
        cache = folder_of(self)
        (cache / "none.tar").write_bytes(image)
        return CleanRoot("none", cache)

    def test_one_that_cannot_be_made_leaves_nothing(self):
        root = self.root(b"no archive")
        with self.assertRaisesRegex(Failed, "tar"):
            with root:
                self.fail("It was made of nothing.")
        self.assertFalse(root.path.exists())

    def test_nor_does_one_that_is_interrupted(self):
        root = self.root(b"")

        def interrupt(*_):
            (root.path / "half").write_text("")
            raise KeyboardInterrupt
        root.host = interrupt
        with self.assertRaises(KeyboardInterrupt):
            root.__enter__()
        self.assertFalse(pathlib.Path(root.path).exists())


if __name__ == "__main__":
    unittest.main()

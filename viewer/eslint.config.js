import js from "@eslint/js";
import tseslint from "typescript-eslint";

export default tseslint.config(
    { ignores: ["dist/", "node_modules/"] },
    {
        files: ["**/*.mjs", "eslint.config.js"],
        extends: [js.configs.recommended],
        languageOptions: { globals: { Buffer: "readonly", console: "readonly", process: "readonly" } },
    },
    {
        files: ["**/*.ts"],
        extends: [
            js.configs.recommended,
            ...tseslint.configs.strictTypeChecked,
            ...tseslint.configs.stylisticTypeChecked,
        ],
        languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } },
        rules: {
            "no-undef": "off",
            "max-lines-per-function": ["error", 80],
            // Where the page is built an element that is not there is an error all the same.
            "@typescript-eslint/no-non-null-assertion": "off",
            "@typescript-eslint/no-unnecessary-condition": "off",
        },
    },
    {
        files: ["test/**/*.ts"],
        // The test runner awaits its tests itself.
        rules: { "@typescript-eslint/no-floating-promises": "off" },
    },
);

import js from '@eslint/js';

export default [
  {ignores: ['node_modules/', 'dist/']},
  js.configs.recommended,
  {
    rules: {
      'no-undef': 'off',  // tsc knows the names of the browser
      eqeqeq: 'error',
      'prefer-const': 'error',
      'no-var': 'error',
      complexity: ['error', 16],
      'max-lines-per-function': ['error', {max: 80, skipComments: true}],
    },
  },
];
